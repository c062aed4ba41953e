// The loading of the system's authorities is intercepted in this program: the tests' own authority joins them.
#include "tests/security/TrustedAuthority.h"

#include <atomic>

#include <dlfcn.h>

#include <testkit/Certificates.h>

namespace
{

std::atomic<int> reads = 0;

} // namespace

extern "C" int X509_STORE_load_file(X509_STORE* store, char const* file)
{
    using Load = int (*)(X509_STORE*, char const*);
    static auto const load = reinterpret_cast<Load>(::dlsym(RTLD_NEXT, "X509_STORE_load_file"));
    ++reads;
    X509_STORE_add_cert(store, testkit::TestAuthority::instance().certificate());
    return load(store, file);
}

int test::readsOfSystemAuthorities()
{
    return reads;
}
