#include "clients.h"

#include "host.h"
#include "kinds.h"

#include "default_platform/host_settings.h"

#include <algorithm>
#include <random>
#include <string_view>

namespace koine::soak {
namespace {

constexpr int kRequestsOfAClient = 40;
constexpr int kAborted = -7;

void pauseAMoment(std::mt19937& random) {
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
}

} // namespace

Clients::Clients(const std::vector<Unit>& units, Ledger& ledger, unsigned int count, unsigned int seed)
    : ledger_(ledger), crew_("client", ledger, count, [this, &units, seed](Crew::Member& member) {
          use(member, units[member.number() % units.size()], seed + 100 * member.number());
      }) {}

void Clients::use(Crew::Member& member, const Unit& unit, unsigned int seed) {
    while (!member.shouldEnd()) {
        const std::unique_ptr<IHttpClient, Release> client(CreateIHttpClient());
        if (!client)
            return ledger_.complain("no HTTP client could be made");
        std::atomic<bool> done{false};
        std::thread other([&] { interfere(*client, done, ++seed); });
        for (int i = 0; i < kRequestsOfAClient && !member.shouldEnd(); ++i) {
            member.moves();
            requestOnce(*client, unit, i % 8 == 0);
        }
        done = true;
        other.join();
    }
}

void Clients::requestOnce(IHttpClient& client, const Unit& unit, bool fresh) {
    const std::string url = unit.url() + "/PTZ.cgi?stop=3";
    char* body = nullptr;
    unsigned int length = 0;
    const int result = client.Request(url.c_str(), nullptr, nullptr, nullptr, 0, kUser, kPassword, &body,
                                      &length, 0, fresh ? 1 : 0);
    ++requests_;
    aborted_ += result == kAborted ? 1 : 0;
    const bool isStated =
        result == kAborted || std::find(kResults.begin(), kResults.end(), result) != kResults.end();
    const std::string_view text(body == nullptr ? "" : body, length);
    if (!isStated || (result == 1 && showsAnother(text, unit.mark())))
        ledger_.complain("a client of " + unit.mark() + ": result " + std::to_string(result) + ", \"" +
                         std::string(text.substr(0, 200)) + "\"");
}

void Clients::interfere(IHttpClient& client, const std::atomic<bool>& done, unsigned int seed) const {
    std::mt19937 random(seed);
    while (!done) {
        pauseAMoment(random);
        switch (random() % 6) {
        case 0:
            client.Close();
            break;
        case 1:
            client.Abort();
            break;
        case 2:
            client.SetTimeout(random() % 2 == 0 ? 0 : 200);
            break;
        default:
            static_cast<void>(client.GetStatus());
        }
    }
}

Meddler::Meddler(Ledger& ledger)
    : crew_("meddler", ledger, 1, [this](Crew::Member& member) { run(member); }) {}

bool Meddler::end() {
    const bool ended = crew_.end();
    traceToNowhere();
    return ended;
}

void Meddler::run(Crew::Member& member) {
    std::mt19937 random(1);
    const auto count = [](const char*, void* self) { ++static_cast<Meddler*>(self)->lines_; };
    while (!member.shouldEnd()) {
        member.moves();
        pauseAMoment(random);
        random() % 2 == 0 ? traceToNowhere() : traceToCallback(count, this);
        setRequestTimeLimit(static_cast<unsigned int>(kTimeLimit.count()));
        setConnectTimeLimit(static_cast<unsigned int>(kTimeLimit.count()));
        setBodyLimit(std::size_t{1} << 20);
        setTlsVerification(random() % 2 == 0);
        static_cast<void>(setTlsAuthorityFile(nullptr));
        static_cast<void>(setTlsPinnedKey(nullptr));
    }
}

} // namespace koine::soak
