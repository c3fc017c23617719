// Many threads and many objects: what the thread sanitizer looks at. Nothing is recorded here, so that only
// the library's own locks order the threads.

#include "tests/support/test_request.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace koine::test {
namespace {

constexpr unsigned int kThreads = 8;
constexpr int kRounds = 40;

/// Runs the work on eight threads at once; they start together.
void onThreads(const std::function<void(unsigned int)>& work) {
    std::atomic<unsigned int> ready{0};
    std::vector<std::thread> threads;
    for (unsigned int number = 0; number < kThreads; ++number)
        threads.emplace_back([&ready, &work, number] {
            ready.fetch_add(1);
            while (ready.load() < kThreads)
                std::this_thread::yield();
            work(number);
        });
    for (std::thread& thread : threads)
        thread.join();
}

class Threads : public ::testing::Test {
protected:
    Threads() {
        device().answerAsCamera();
        device().on("Other.cgi", "0\nOK\nOther=1\n");
        platform().beQuiet();
    }

    /// A mix of lines that fill caches, start streams, read, write and pass on.
    static void work(TestRequest& request, unsigned int number) {
        const std::vector<std::string> lines = {
            "http://camera/Other.cgi",
            "Login.cgi",
            "Capability.cgi?action=get",
            "Config.cgi?action=get&category=*",
            "Config.cgi?action=set&Video.I0.Brightness=2",
            "Stream.cgi?action=set&StreamSetup.Transport.Protocol=RTSP&StreamSetup.Setting.Channel=1",
            "Stream.cgi?action=get",
            "Onvif.cgi?action=GetStreamUri&ProfileToken=ONE",
        };
        for (int round = 0; round < kRounds; ++round) {
            // Every object's first line has to tell the address.
            const std::string& line =
                round == 0 ? lines[0] : lines[(static_cast<unsigned>(round) + number) % lines.size()];
            const Reply reply = request.ask(line, number);
            EXPECT_EQ(reply.result, 1) << line << reply.text;
        }
    }
};

TEST_F(Threads, EachWithItsOwnObject) {
    onThreads([](unsigned int number) {
        TestRequest request;
        work(request, number);
    });
}

TEST_F(Threads, AllOnOneObjectWithAUserEach) {
    TestRequest request;
    onThreads([&request](unsigned int number) { work(request, number); });
}

TEST_F(Threads, AllOnOneObjectAndOneUser) {
    TestRequest request;
    onThreads([&request](unsigned int) { work(request, kUser); });
}

TEST_F(Threads, ParsingTheirAnswersIntoOneUsersMap) {
    // Slow enough for the next request to begin meanwhile, if it could.
    platform().hooks.createMapstrFromCgi = [](const char*, CgiMap* map) {
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        (*map)["Other"] = "1";
        return 1;
    };
    TestRequest request;
    request.connect();
    onThreads([&request](unsigned int) {
        for (int round = 0; round < kRounds; ++round) {
            char line[] = "Other.cgi";
            EXPECT_EQ(request.requestHttpData(kUser, line, nullptr, nullptr), 1);
        }
    });
    EXPECT_STREQ(request.GetCgiMapStr(kUser, "Other"), "1");
}

TEST_F(Threads, OneRequestAtATimeReachesTheDevice) {
    TestRequest request;
    request.connect();
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    std::atomic<int> total{0};
    request.steps.requestCgi = [&](unsigned int, char*, char**, auto, auto) {
        const int now = inside.fetch_add(1) + 1;
        if (now > most.load())
            most = now;
        std::this_thread::yield();
        ++total;
        inside.fetch_sub(1);
        return 1;
    };
    onThreads([&request](unsigned int number) {
        for (int round = 0; round < kRounds; ++round)
            request.ask("Other.cgi", number);
    });
    EXPECT_EQ(most, 1);
    EXPECT_EQ(total, static_cast<int>(kThreads) * kRounds);
}

TEST_F(Threads, TheLockIsHeldForTheWholeOfARequest) {
    // A plain number, written by each request in several steps: a race if two of them run at once.
    TestRequest request;
    request.connect();
    long unguarded = 0;
    request.steps.recoveryUrl = [&](unsigned int, char*, char**) {
        ++unguarded;
        return 1;
    };
    request.steps.requestCgi = [&](unsigned int, char*, char**, auto, auto) {
        ++unguarded;
        return 1;
    };
    onThreads([&request](unsigned int number) {
        for (int round = 0; round < kRounds; ++round)
            request.ask("Other.cgi", number);
    });
    EXPECT_EQ(unguarded, 2L * kThreads * kRounds);
}

TEST_F(Threads, WaitingForEachOther) {
    TestRequest request;
    request.connect();
    onThreads([&request](unsigned int number) {
        for (int round = 0; round < kRounds; ++round)
            if (number % 2 == 0)
                request.ask("Other.cgi", number);
            else
                EXPECT_EQ(request.testOK(nullptr, 0, nullptr, nullptr), 1);
    });
}

TEST_F(Threads, NamingTheSameNewUsersGetTheSameClients) {
    constexpr unsigned int kNewUsers = 200;
    StreamIDCenter center;
    std::vector<std::vector<StreamIDClient*>> seen(kThreads, std::vector<StreamIDClient*>(kNewUsers));
    onThreads([&](unsigned int number) {
        for (unsigned int uid = 0; uid < kNewUsers; ++uid) {
            const boost::shared_ptr<StreamIDClient> client = center.get_streamid_client(uid);
            seen[number][uid] = client.get();
        }
    });
    for (unsigned int number = 1; number < kThreads; ++number)
        EXPECT_EQ(seen[number], seen[0]);
    const std::set<StreamIDClient*> different(seen[0].begin(), seen[0].end());
    EXPECT_EQ(different.size(), kNewUsers);
}

TEST_F(Threads, ReadingDifferentUsersOfOneObject) {
    TestRequest request;
    onThreads([&request](unsigned int number) {
        for (int round = 0; round < kRounds; ++round) {
            EXPECT_STREQ(request.profile_token(number), "PROFILE-1");
            EXPECT_EQ(request.getSettingMaxW(number), 30000);
            EXPECT_STREQ(request.GetStreamMapStr(number, "StreamSetup.VideoEncoderConfiguration.Quality"),
                         "5");
        }
    });
}

TEST_F(Threads, MakingAndDestroyingObjects) {
    onThreads([](unsigned int) {
        for (int round = 0; round < kRounds; ++round) {
            const boost::shared_ptr<IBaseRequest> request = boost::make_shared<TestRequest>();
            EXPECT_EQ(request->server_port(), 80U);
        }
    });
}

TEST_F(Threads, LastOwnersOfOneObject) {
    for (int round = 0; round < kRounds; ++round) {
        auto first = std::make_unique<boost::shared_ptr<IBaseRequest>>(boost::make_shared<TestRequest>());
        std::vector<boost::shared_ptr<IBaseRequest>> owners(kThreads, *first);
        first.reset();
        onThreads([&owners](unsigned int number) {
            owners[number]->testOK(nullptr, 0, nullptr, nullptr);
            owners[number].reset();
        });
    }
}

} // namespace
} // namespace koine::test
