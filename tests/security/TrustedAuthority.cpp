// The library trusts the system's authorities and offers no way to add one. In this program libcurl's loading of them
// is intercepted: the tests' own authority joins the system's.
#include <dlfcn.h>

#include "tests/support/Certificates.h"

extern "C" int X509_STORE_load_file(X509_STORE* store, char const* file)
{
    using Load = int (*)(X509_STORE*, char const*);
    static auto const load = reinterpret_cast<Load>(::dlsym(RTLD_NEXT, "X509_STORE_load_file"));
    X509_STORE_add_cert(store, test::TestAuthority::instance().certificate());
    return load(store, file);
}
