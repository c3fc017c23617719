// What the device is, learned from its login answer once.

#include "camera.h"

namespace koine::test {
namespace {

class LoginCache : public CameraTest {
protected:
    std::string loginText(int refresh = 0, const char* key = nullptr) {
        Answer answer;
        EXPECT_EQ(camera.getCacheLogin(kUser, refresh, key, answer.out()), 1);
        return answer.text();
    }
    int fill() { return camera.getCacheLogin(kUser, 0, nullptr, nullptr); }
};

TEST_F(LoginCache, AsksTheDeviceOnceWithPlainMethodAndConnection) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(fill(), 1);
    loginText();
    ASSERT_EQ(camera.sent.size(), 1U);
    EXPECT_EQ(camera.sent[0].uid, kUser);
    EXPECT_EQ(camera.sent[0].url, "http://camera:80/Login.cgi");
    EXPECT_EQ(camera.sent[0].method, 0);
    EXPECT_EQ(camera.sent[0].connection, 0);
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(LoginCache, AddressesTheDeviceByItsAddressAndPort) {
    camera.set_server_address("10.0.0.9");
    camera.set_server_port(8080);
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.sent.at(0).url, "http://10.0.0.9:8080/Login.cgi");
}

TEST_F(LoginCache, AnswersWithTheWholeMap) {
    camera.has(kLoginLine, "Product-Name=X\nProduct-ID=Y\nUser-Level=VIEWER\n");
    EXPECT_EQ(loginText(), "0\nOK\nProduct-ID=Y\nProduct-Name=X\nUser-Level=VIEWER\n");
}

TEST_F(LoginCache, IgnoresTheKey) {
    const std::string whole = loginText();
    EXPECT_EQ(loginText(0, "Product-ID"), whole);
    EXPECT_EQ(loginText(0, "No.Such.Key"), whole);
}

struct ProductRow {
    const char* pairs;
    int onvif;
    int is331_578;
    int is5240;
    int pell;
};

TEST_F(LoginCache, SetsTheFourProductFlagsFromNameAndIdentifier) {
    const ProductRow rows[] = {
        {"Product-Name=ONVIF_GENERIC\n", 1, 0, 0, 0},
        {"Product-Name=TL-331\n", 0, 1, 0, 0},
        {"Product-Name=TL-5240\n", 0, 0, 1, 0},
        {"Product-ID=PELL-1\n", 0, 0, 0, 1},
        {"Product-Name=ONVIF_GENERIC\nProduct-ID=PELL-1\n", 1, 0, 0, 1},
        {"Product-Name=PELL\nProduct-ID=ONVIF_GENERIC\n", 0, 0, 0, 0},
    };
    for (const ProductRow& row : rows) {
        Camera one;
        one.has(kLoginLine, row.pairs);
        EXPECT_EQ(one.getCacheLogin(kUser, 0, nullptr, nullptr), 1);
        EXPECT_EQ(one.getIsONVIFProduct() != 0, row.onvif != 0) << row.pairs;
        EXPECT_EQ(one.getIs331_578Product() != 0, row.is331_578 != 0) << row.pairs;
        EXPECT_EQ(one.getIs5240Product() != 0, row.is5240 != 0) << row.pairs;
        EXPECT_EQ(one.getIsPellDevice() != 0, row.pell != 0) << row.pairs;
    }
}

TEST_F(LoginCache, OverwritesFlagsThatTheHostHadSet) {
    camera.setIsONVIFProduct(1);
    camera.setIs331_578Product(1);
    camera.setIs5240Product(1);
    camera.setIsPellDevice(1);
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.getIsONVIFProduct(), 0);
    EXPECT_EQ(camera.getIs331_578Product(), 0);
    EXPECT_EQ(camera.getIs5240Product(), 0);
    EXPECT_EQ(camera.getIsPellDevice(), 0);
}

TEST_F(LoginCache, LeavesTheFlagsAloneOnceItIsFilled) {
    EXPECT_EQ(fill(), 1);
    camera.setIsPellDevice(1);
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.getIsPellDevice(), 1);
}

TEST_F(LoginCache, NamesTheProductKeysAfterwardsEvenIfTheDeviceDidNot) {
    camera.has(kLoginLine, "User-Level=VIEWER\n");
    EXPECT_EQ(loginText(), "0\nOK\nProduct-ID=\nProduct-Name=\nUser-Level=VIEWER\n");
}

/// Notes the order in which the flags are written.
class FlagOrder : public Camera {
public:
    std::vector<std::string> order;
    void setIsONVIFProduct(int is) override { note("onvif", is); }
    void setIs331_578Product(int is) override { note("331_578", is); }
    void setIs5240Product(int is) override { note("5240", is); }
    void setIsPellDevice(int is) override { note("pell", is); }

private:
    void note(const std::string& flag, int is) { order.push_back(flag + (is != 0 ? "+" : "-")); }
};

TEST(LoginFlags, AreWrittenThroughTheirSettersInOrder) {
    FlagOrder one;
    one.has(kLoginLine, "Product-Name=TL-578\nProduct-ID=PELL-1\n");
    EXPECT_EQ(one.getCacheLogin(kUser, 0, nullptr, nullptr), 1);
    EXPECT_EQ(one.order, (std::vector<std::string>{"onvif-", "331_578+", "5240-", "pell+"}));
}

TEST_F(LoginCache, ARefreshOfAFilledCacheEmptiesItWithoutAskingAgain) {
    EXPECT_EQ(fill(), 1);
    camera.asked();
    Answer answer;
    EXPECT_EQ(camera.getCacheLogin(kUser, 1, nullptr, answer.out()), -8);
    EXPECT_TRUE(answer.isNull());
    EXPECT_EQ(camera.asked(), std::vector<std::string>{});
    EXPECT_TRUE(tracesAre({"???#* BaseRequest, err-8. \n"}));
}

TEST_F(LoginCache, ARefreshWithoutAnAnswerSucceedsAndStaysEmpty) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.getCacheLogin(kUser, 1, nullptr, nullptr), 1);
    Answer answer;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), -8);
}

TEST_F(LoginCache, ARefreshOfAnUnfilledCacheAsksTheDevice) {
    EXPECT_EQ(camera.getCacheLogin(kUser, 1, nullptr, nullptr), 1);
    EXPECT_EQ(camera.asked(), std::vector<std::string>{"Login.cgi"});
}

TEST_F(LoginCache, OnlyOneMeansRefresh) {
    EXPECT_EQ(fill(), 1);
    const std::string before = loginText();
    EXPECT_EQ(loginText(2), before);
    EXPECT_EQ(loginText(-1), before);
}

TEST_F(LoginCache, AFailedRequestIsTracedAndGivesItsCode) {
    camera.fails(kLoginLine, -1);
    camera.set_strm_setting_channel(3);
    Answer answer;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), -1);
    EXPECT_TRUE(answer.isNull());
    EXPECT_TRUE(tracesAre({"??#* getCacheLogin: error, uid=7:3. \n"}));
}

TEST_F(LoginCache, AFailedRequestHandsOverWhatTheDeviceSaid) {
    camera.fails(kLoginLine, -6, "500 oh no");
    Answer answer;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), -6);
    EXPECT_EQ(answer.text(), "500 oh no");
}

TEST_F(LoginCache, OverwritesWhatTheAnswerPointedToWhenTheRequestFails) {
    camera.fails(kLoginLine, -6);
    char before[] = "before";
    char* answer = before;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, &answer), -6);
    EXPECT_EQ(answer, nullptr);
}

TEST_F(LoginCache, AnAnswerThatDoesNotParseIsTracedWithItsCode) {
    camera.answers(kLoginLine, "-77\nERROR: No.\n");
    Answer answer;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), -77);
    EXPECT_EQ(answer.text(), "-77\nERROR: No.\n");
    EXPECT_TRUE(tracesAre({"??#* ParsingCGIData: uid=7:0, err-77. \n"}));
}

TEST_F(LoginCache, AnAnswerWithoutBodyDoesNotParse) {
    camera.answersNothing(kLoginLine);
    Answer answer;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), -2);
    EXPECT_TRUE(answer.isNull());
    EXPECT_TRUE(tracesAre({"??#* ParsingCGIData: uid=7:0, err-2. \n"}));
}

TEST_F(LoginCache, AFailureIsNotRemembered) {
    for (const char* garbage : {"<html>", "-77\nERROR: No.\n", ""}) {
        camera.answers(kLoginLine, garbage);
        EXPECT_NE(fill(), 1) << garbage;
    }
    camera.fails(kLoginLine, -3);
    EXPECT_EQ(fill(), -3);
    camera.recovers(kLoginLine);
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.asked().size(), 5U);
    EXPECT_EQ(loginText(), "0\nOK\nProduct-ID=C100\nProduct-Name=Camera\n");
}

TEST_F(LoginCache, AFailureLeavesTheFlagsAsTheyWere) {
    camera.setIsPellDevice(1);
    camera.setIs5240Product(1);
    camera.answers(kLoginLine, "-77\nProduct-Name=ONVIF_GENERIC\n");
    EXPECT_NE(fill(), 1);
    EXPECT_EQ(camera.getIsPellDevice(), 1);
    EXPECT_EQ(camera.getIs5240Product(), 1);
    EXPECT_EQ(camera.getIsONVIFProduct(), 0);
}

} // namespace
} // namespace koine::test
