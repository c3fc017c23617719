// koine demo: the library at work against a simulated device.

#include "default_platform/host_settings.h"
#include "devices/open_device.h"
#include "simulator/pair_list.h"
#include "simulator/simulated_device.h"
#include "tools/commands/commands.h"
#include "tools/demo/page.h"
#include "tools/json.h"
#include "tools/learned.h"

#include <boost/make_shared.hpp>

#include <array>
#include <chrono>

namespace koine::tool {
namespace {

constexpr const char* kUser = "admin";
constexpr const char* kPassword = "only for the demo";
constexpr std::string_view kStreamGet = "Stream.cgi?action=get";
constexpr std::string_view kUriKey = "GetStreamUriResponse.MediaUri.Uri";

/// A stream user and what it asks for.
struct Viewer {
    unsigned int uid;
    const char* wish;
    const char* setup;
};

constexpr std::array<Viewer, 2> kViewers = {{
    {1, "AUTO at 1280x720",
     "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP"
     "&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720"
     "&StreamSetup.VideoEncoderConfiguration.RateControl.FrameRateLimit=15"},
    {2, "MOBILE",
     "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP"
     "&ProfileMode=MOBILE"},
}};

/// An encoder setting that was pushed to the device.
struct Pushed {
    std::string key;
    std::string before;
    std::string sent;
};

class Demo {
public:
    Demo(unsigned int delayMilliseconds, bool silent)
        : page_(silent), simulated_(deviceOptions()), device_(boost::make_shared<WatchedDevice>()) {
        if (delayMilliseconds > 0)
            simulated_.setFault(sim::Fault(sim::FaultKind::delay, delayMilliseconds));
        DeviceOptions options;
        options.username = kUser;
        options.password = kPassword;
        setUpDevice(*device_, parseDeviceUrl(simulated_.url()), options);
        delay_ = delayMilliseconds;
    }

    void run() {
        head();
        int number = 0;
        for (const Viewer& viewer : kViewers)
            cold_.push_back(startStream(++number, viewer, ""));
        showPushed(++number);
        for (const Viewer& viewer : kViewers)
            warm_.push_back(startStream(++number, viewer, " again, from warm caches"));
        summary();
    }

    /// What the summary tells, for programs.
    Json asJson() const {
        Json users = Json::array();
        for (std::size_t i = 0; i < kViewers.size(); ++i) {
            Json user = Json::object();
            user.set("uid", Json::number(kViewers[i].uid));
            user.set("wish", kViewers[i].wish);
            user.set("uri", uris_.at(kViewers[i].uid));
            user.set("first", costAsJson(cold_[i]));
            user.set("again", costAsJson(warm_[i]));
            users.add(std::move(user));
        }
        Json settings = Json::array();
        for (const Pushed& pushed : pushed_) {
            Json one = Json::object();
            one.set("key", pushed.key);
            one.set("before", pushed.before);
            one.set("pushed", pushed.sent);
            one.set("device", simulated_.value(pushed.key));
            settings.add(std::move(one));
        }
        const sim::Counters counters = simulated_.counters();
        Json json = Json::object();
        json.set("users", std::move(users));
        json.set("settings", std::move(settings));
        json.set("connections", Json::number(static_cast<long long>(counters.connections)));
        json.set("requests", Json::number(static_cast<long long>(counters.requests)));
        json.set("unauthorized", Json::number(static_cast<long long>(counters.unauthorized)));
        return json;
    }

private:
    static Json costAsJson(const Cost& cost) {
        Json json = Json::object();
        json.set("device_requests", Json::number(static_cast<long long>(cost.deviceRequests)));
        json.set("milliseconds", Json::fraction(cost.milliseconds));
        return json;
    }

    static sim::Options deviceOptions() {
        sim::Options options(sim::builtinModel("dome"));
        options.auth = sim::AuthKind::digestMd5;
        options.username = kUser;
        options.password = kPassword;
        return options;
    }

    void head() const {
        page_.title("Koine: two streams on one camera");
        page_.fact("device", "simulated dome at " + simulated_.url());
        page_.fact("answers", "after " + std::to_string(delay_) + " ms each, to Digest authentication");
        page_.fact("to read", page_.style().paint(Tint::cyan, "> what the host sends") + ", " +
                                  page_.style().paint(Tint::yellow, "what the device is asked") + ", " +
                                  page_.style().paint(Tint::green, "what the host gets"));
    }

    /// One line of the host, with all that it caused.
    Answer send(unsigned int uid, const std::string& line, Cost& total) {
        using Clock = std::chrono::steady_clock;
        page_.hostLine(line);
        const Clock::time_point start = Clock::now();
        Answer answer = request(*device_, uid, line);
        Cost cost;
        cost.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        for (const DeviceRequest& made : device_->takeRequests()) {
            page_.deviceRequest(made);
            notePushed(made.line);
            ++cost.deviceRequests;
        }
        std::string& before = answers_[std::to_string(uid) + " " + line];
        page_.answer(answer, cost, before == answer.text);
        before = answer.text;
        total += cost;
        if (!answer.ok())
            throw Failure(ExitCode::refused, "the demo's line was refused: " + line);
        return answer;
    }

    Cost startStream(int number, const Viewer& viewer, const char* again) {
        page_.section(number, "Stream user " + std::to_string(viewer.uid) + ": " + viewer.wish + again);
        Cost total;
        send(viewer.uid, viewer.setup, total);
        const CgiMap stream = send(viewer.uid, std::string(kStreamGet), total).values();
        const auto token = stream.find("ProfileToken");
        const CgiMap uri = send(viewer.uid,
                                "Onvif.cgi?action=GetStreamUri&ProfileToken=" +
                                    (token == stream.end() ? std::string() : token->second),
                                total)
                               .values();
        uris_[viewer.uid] = uri.find(kUriKey) == uri.end() ? std::string() : uri.find(kUriKey)->second;
        return total;
    }

    /// Keeps the encoder settings of a set line, with what the device held before it was started.
    void notePushed(const std::string& line) {
        std::size_t at = line.find("&Media.Profiles.");
        while (at != std::string::npos) {
            const std::size_t end = line.find('&', at + 1);
            const std::string item = line.substr(at + 1, end == std::string::npos ? end : end - at - 1);
            const std::size_t equals = item.find('=');
            if (equals != std::string::npos)
                pushed_.push_back(
                    {item.substr(0, equals), valueAtStart(item.substr(0, equals)), item.substr(equals + 1)});
            at = end;
        }
    }

    std::string valueAtStart(const std::string& key) const {
        const sim::PairList* const media = model_.answer("media");
        return media == nullptr ? std::string() : std::string(media->valueOf(key));
    }

    void showPushed(int number) const {
        page_.section(number, "Encoder settings that were pushed, and what the device holds now");
        page_.gap();
        // A key is as wide as most of a terminal: what all of them hold stands in the titles.
        constexpr std::string_view kFamily = "Media.Profiles.";
        constexpr std::string_view kPart = "VideoEncoderConfiguration.";
        Table table({{std::string(kFamily)}, {std::string(kPart)}, {"BEFORE"}, {"PUSHED"}, {"DEVICE NOW"}});
        for (const Pushed& pushed : pushed_) {
            const std::string key = pushed.key.substr(kFamily.size());
            const std::size_t part = key.find("." + std::string(kPart));
            const bool held = part != std::string::npos;
            table.add({key.substr(0, part), held ? key.substr(part + 1 + kPart.size()) : "", pushed.before,
                       pushed.sent, simulated_.value(pushed.key)});
        }
        page_.table(table);
    }

    void summary() const {
        page_.title("Summary");
        using Align = Table::Align;
        Table table({{"STREAM USER"},
                     {"FIRST START", Align::right},
                     {"TIME", Align::right},
                     {"AGAIN", Align::right},
                     {"TIME", Align::right}});
        for (std::size_t i = 0; i < kViewers.size(); ++i)
            table.add({std::to_string(kViewers[i].uid) + ", " + kViewers[i].wish,
                       counted(cold_[i].deviceRequests, "request"), timeText(cold_[i].milliseconds),
                       counted(warm_[i].deviceRequests, "request"), timeText(warm_[i].milliseconds)});
        page_.table(table);
        page_.gap();
        for (const auto& [uid, uri] : uris_)
            page_.fact("URI " + std::to_string(uid), uri);
        const sim::Counters counters = simulated_.counters();
        page_.fact("device", counted(counters.connections, "connection") + ", " +
                                 counted(counters.requests, "request") + ", of which " +
                                 std::to_string(counters.unauthorized) + " answered with 401 (Digest)");
        page_.gap();
    }

    Page page_;
    sim::SimulatedDevice simulated_;
    const sim::DeviceModel model_ = sim::builtinModel("dome"); ///< what the device held at the start
    boost::shared_ptr<WatchedDevice> device_;
    unsigned int delay_ = 0;
    std::vector<Cost> cold_;
    std::vector<Cost> warm_;
    std::vector<Pushed> pushed_;
    std::map<std::string, std::string> answers_; ///< by user and line
    std::map<unsigned int, std::string> uris_;
};

} // namespace

ExitCode DemoCommand::run() const {
    if (trace)
        traceToStandardError();
    Demo demo(delayMilliseconds, json);
    demo.run();
    if (json)
        print(demo.asJson().dump());
    return ExitCode::answered;
}

} // namespace koine::tool
