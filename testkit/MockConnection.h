#pragma once

#include <gmock/gmock.h>

#include <testkit/OperationList.h>

namespace testkit
{

/// The operations of the client for GoogleMock, with which the test is linked by itself. What a test does not say
/// otherwise is answered with a cancelled future, or an empty value by operations that return none. Take it as
/// `testing::StrictMock<testkit::MockConnection>` if calls without an expectation shall fail the test, as
/// `testing::NiceMock` if they shall not even be told of.
class MockConnection : public TessalyConnectionInterface
{
public:
#define KELO_TESTKIT_MOCK(name, parameters, specifiers, ...) MOCK_METHOD((__VA_ARGS__), name, parameters, specifiers);
    KELO_TESTKIT_OPERATIONS(KELO_TESTKIT_MOCK)
    // GoogleMock tells functions of one name apart by the line that they stand in.
    KELO_TESTKIT_OVERLOADS(KELO_TESTKIT_MOCK)
#undef KELO_TESTKIT_MOCK
};

} // namespace testkit
