#pragma once

#include <testkit/OperationList.h>

namespace testkit
{

/// A client without a service. Every operation returns at once what stands under its name in `answers`: a cancelled
/// future, or an empty value from operations that return none, unless a test puts something else there.
///
///     testkit::StubConnection connection;
///     connection.answers.getPartners = testkit::ready(partners);
///
/// See Replies.h for replies that fail or come later. An operation that is to look at its arguments is overridden in a
/// class of the test's own. Answers are not to be changed while another thread calls.
class StubConnection : public TessalyConnectionInterface
{
public:
    StubConnection() = default;
    StubConnection(StubConnection const&) = delete;
    StubConnection& operator=(StubConnection const&) = delete;
    ~StubConnection() override = default;

    /// What each operation returns, by its name; operations of one name share it.
    struct Answers
    {
#define KELO_TESTKIT_ANSWER(name, parameters, specifiers, ...) __VA_ARGS__ name{};
        KELO_TESTKIT_OPERATIONS(KELO_TESTKIT_ANSWER)
#undef KELO_TESTKIT_ANSWER
    };

    Answers answers;

#define KELO_TESTKIT_WORDS(first, ...) first __VA_ARGS__
#define KELO_TESTKIT_STUB(name, parameters, specifiers, ...)                                                           \
    __VA_ARGS__ name parameters KELO_TESTKIT_WORDS specifiers                                                          \
    {                                                                                                                  \
        return answers.name;                                                                                           \
    }
    KELO_TESTKIT_OPERATIONS(KELO_TESTKIT_STUB)
    KELO_TESTKIT_OVERLOADS(KELO_TESTKIT_STUB)
#undef KELO_TESTKIT_STUB
#undef KELO_TESTKIT_WORDS
};

} // namespace testkit
