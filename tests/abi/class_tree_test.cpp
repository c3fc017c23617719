// Where the parts of an object lie, and the numbers that hosts and device classes share.

#include "koine/BaseRequest.h"
#include "platform/url.h"
#include "slots.h"
#include "tests/support/test_request.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <type_traits>

namespace koine::test {
namespace {

static_assert(!std::is_polymorphic<IBase>::value, "slot 0 belongs to IBaseRequest");
static_assert(std::is_empty<IBase>::value, "it must not move what follows");
static_assert(std::is_base_of<IBase, IBaseRequest>::value, "a request object is a stream object too");
static_assert(std::is_base_of<boost::enable_shared_from_this<IBaseRequest>, IBaseRequest>::value,
              "hosts own request objects by their interface");
static_assert(std::is_base_of<IBaseRequest, BaseRequest>::value, "the primary base");
static_assert(std::is_base_of<StreamIDCenter, BaseRequest>::value, "the registry");
static_assert(std::is_base_of<boost::noncopyable, StreamIDCenter>::value, "not to be copied");
static_assert(std::is_base_of<boost::noncopyable, StreamIDClient>::value, "not to be copied");
static_assert(!std::is_convertible<StreamIDCenter*, boost::noncopyable*>::value, "privately");
static_assert(std::is_abstract<IBaseRequest>::value, "all of it is pure");
static_assert(!std::has_virtual_destructor<IBaseRequest>::value, "the interface has no destructor slot");
static_assert(std::is_abstract<BaseRequest>::value, "a device class supplies the rest");
static_assert(std::has_virtual_destructor<BaseRequest>::value, "its own destructor slots");
static_assert(!std::is_polymorphic<Url>::value, "a plain class");
static_assert(std::is_base_of<std::runtime_error, Url::parse_error>::value, "what the parser throws");

TEST(ClassTree, TheInterfaceLiesAtTheBeginningOfTheObject) {
    TestRequest request;
    const void* const object = &request;
    EXPECT_EQ(object, static_cast<const void*>(static_cast<BaseRequest*>(&request)));
    EXPECT_EQ(object, static_cast<const void*>(static_cast<IBaseRequest*>(&request)));
    EXPECT_NE(object, static_cast<const void*>(static_cast<StreamIDCenter*>(&request)));
}

TEST(ClassTree, SlotZeroIsTheInterfacesFirstOperation) {
    TestRequest request;
    using First = const char* (*)(void*);
    EXPECT_STREQ(reinterpret_cast<First>(tableEntry(&request, 0))(&request), request.deviceClass());
}

TEST(ClassTree, ProfileRecordsHaveTheirFieldsInOrder) {
    EXPECT_EQ(offsetof(_tagProfileMap, encoding), 0U);
    EXPECT_LT(offsetof(_tagProfileMap, encoding), offsetof(_tagProfileMap, width));
    EXPECT_LT(offsetof(_tagProfileMap, width), offsetof(_tagProfileMap, height));
    EXPECT_LT(offsetof(_tagProfileMap, height), offsetof(_tagProfileMap, quality));
    EXPECT_LT(offsetof(_tagProfileMap, quality), offsetof(_tagProfileMap, frameRateLimit));
    EXPECT_LT(offsetof(_tagProfileMap, frameRateLimit), offsetof(_tagProfileMap, bitrateLimit));
    EXPECT_LT(offsetof(_tagProfileMap, bitrateLimit), offsetof(_tagProfileMap, govLength));
}

TEST(ClassTree, TheSharedNumbersHaveTheirValues) {
    EXPECT_EQ(static_cast<int>(REQCGI_METHOD_GET), 0);
    EXPECT_EQ(static_cast<int>(REQCGI_CONNECTION_KEEP), 0);
    EXPECT_EQ(static_cast<int>(TOVLIN_REQUEST_MODE_NONE), -1);
    EXPECT_EQ(static_cast<int>(TOVLIN_REQUEST_MODE_STREAM), 0);
    EXPECT_EQ(static_cast<int>(TOVLIN_REQUEST_MODE_NETWORK_BACKUP), 1);
    EXPECT_EQ(static_cast<int>(VIDEO_SYSTEM_NTSC), 0);
    EXPECT_EQ(static_cast<int>(VIDEO_SYSTEM_PAL), 1);
    EXPECT_EQ(static_cast<int>(QA_HTTP_ERR_NONE), 0);
    EXPECT_EQ(sizeof(_REQCGI_METHOD_DEF), sizeof(int));
    EXPECT_EQ(sizeof(_REQCGI_CONNECTION_DEF), sizeof(int));
    EXPECT_EQ(sizeof(_TOVLIN_REQUEST_MODE_DEF), sizeof(int));
    EXPECT_EQ(sizeof(_VIDEO_SYSTEM_DEF), sizeof(int));
    EXPECT_EQ(sizeof(__QaHttpErr), sizeof(int));
    EXPECT_EQ(static_cast<int>(kOk), 1);
    EXPECT_EQ(static_cast<int>(kNotBuilt), 0);
    EXPECT_EQ(static_cast<int>(kAuthFailed), -1);
    EXPECT_EQ(static_cast<int>(kRefused), -2);
    EXPECT_EQ(static_cast<int>(kNoResource), -8);
    EXPECT_EQ(static_cast<int>(kNoFunction), -14);
}

} // namespace
} // namespace koine::test
