// The process of the devices: each of a model, with its mark in every text, and faults that come and go.
#include "fleet.h"

#include "simulator/simulated_device.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>

#include <poll.h>
#include <unistd.h>

namespace koine::soak {
namespace {

namespace fs = std::filesystem;

constexpr int kStepMilliseconds = 5;
constexpr unsigned int kStepsPerForgetting = 2000;

/// "%M" stands for the mark, "%P" for the port of another device.
constexpr const char* kFaults[] = {
    "delay=20",
    "hang",
    "refuse",
    "reset-connection",
    "reset-before-body",
    "reset-within-body=20",
    "reset-within-answer=10",
    "close-within-answer=30",
    "truncated-body=20",
    "short-length=64",
    "drip=1",
    "drip=20",
    "endless-body=4000000",
    "endless-chunks=4000000",
    "chunked=7",
    "empty-body",
    "garbage",
    "wrong-status-line",
    "status=500",
    "status=404",
    "status=403",
    "status=503",
    "401-storm",
    "redirect=http://127.0.0.1:%P/PTZ.cgi",
    "header-flood=3000",
    "close",
    "close-silently",
    "answer=-11\\nERROR: Unknown parameter.\\n",
    "answer=-35\\nERROR: Authentication error.\\n",
    "answer=0\\nOK\\nUnit=%M\\nCapability.Unit=%M\\nVideo.Unit=%M\\nMedia.Unit=%M\\nNotification.Unit=%M\\n"
    "Media.Profiles.Count=99999999\\n%n%s%x=%n%s%x\\n",
    "answer=<html>%M</html>",
    "raw=HTTP/1.1 200 OK\\r\\n\\r\\n0\\nOK\\nUnit=%M\\nMedia.Unit=%M\\nVideo.Unit=%M\\nCapability.Unit=%M\\n"
    "Notification.Unit=%M\\nA=\\0B=2\\n",
};
constexpr const char* kPlaces[] = {
    "", "", ";path=Login", ";path=Capability", ";path=Med", ";path=Vid", ";path=Config.cgi?action=set"};

std::string replaced(std::string text, std::string_view what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

/// A folder that is gone at the end.
class Workshop {
public:
    Workshop() : folder_((fs::temp_directory_path() / "koine-soak-XXXXXX").string()) {
        if (::mkdtemp(folder_.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
    }
    ~Workshop() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    /// A model whose answers all begin with the mark.
    sim::DeviceModel marked(const std::string& model, const std::string& mark) const {
        const fs::path copy = fs::path(folder_) / model;
        fs::remove_all(copy);
        fs::copy(sim::modelFolder() / model, copy);
        for (const fs::directory_entry& entry : fs::directory_iterator(copy))
            if (entry.path().filename() != "model.txt")
                markFile(entry.path(), mark);
        return sim::DeviceModel::load(copy);
    }

private:
    static std::string keyFor(const std::string& stem) {
        static const std::array<std::pair<const char*, const char*>, 7> kKeys = {{
            {"capability", "Capability.Unit"},
            {"media", "Media.Unit"},
            {"video", "Video.Unit"},
            {"camera", "Camera.Unit"},
            {"notification", "Notification.Unit"},
            {"misc", "Misc.Unit"},
            {"videoanalytics", "VideoAnalytics.Unit"},
        }};
        for (const auto& [name, key] : kKeys)
            if (stem == name || stem.rfind(std::string(name) + "_channel", 0) == 0)
                return key;
        return "Unit";
    }

    static void markFile(const fs::path& file, const std::string& mark) {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        const std::string head = "0\nOK\n";
        if (text.str().rfind(head, 0) != 0)
            throw std::runtime_error(file.string() + " is no answer text");
        std::ofstream(file) << head << keyFor(file.stem().string()) << "=" << mark << "\n"
                            << text.str().substr(head.size());
    }

    std::string folder_;
};

class Devices {
public:
    Devices(unsigned int count, unsigned int seed) : random_(seed) {
        const Workshop workshop;
        std::vector<std::string> models = sim::modelNames();
        // What this one says about itself is turned into other keys as a whole, and its mark is lost.
        models.erase(std::remove(models.begin(), models.end(), "nocapability"), models.end());
        for (unsigned int number = 0; number < count; ++number) {
            sim::Options options(workshop.marked(models[number % models.size()], Unit::markOf(number)));
            options.auth = static_cast<sim::AuthKind>(number % 4);
            options.username = kUser;
            options.password = kPassword;
            options.cookie = "session=" + Unit::markOf(number);
            options.nonceLifetimeRequests = number % 3 == 0 ? 50 : 0;
            devices_.push_back(std::make_unique<sim::SimulatedDevice>(options));
            heal(number);
        }
    }

    std::string ports() const {
        std::string text;
        for (const auto& device : devices_)
            text += std::to_string(device->port()) + "\n";
        return text;
    }

    void healAll() {
        for (unsigned int number = 0; number < devices_.size(); ++number)
            heal(number);
    }

    unsigned long shown() const { return shown_; }

    /// One device gets a fault, or loses all it has.
    void change() {
        const unsigned int number = pick(devices_.size());
        switch (pick(5)) {
        case 0:
            return spoil(number);
        case 1:
            return devices_[number]->expireNonces();
        case 2:
            return devices_[number]->setAuth(static_cast<sim::AuthKind>(pick(4)));
        default:
            return heal(number);
        }
    }

    /// The logs of the devices are not what is looked at here.
    void forget() {
        for (const auto& device : devices_)
            device->resetCounters();
    }

private:
    unsigned int pick(std::size_t count) { return static_cast<unsigned int>(random_() % count); }

    void heal(unsigned int number) {
        devices_[number]->clearFaults();
        // The line that is only passed on: by its answer it is seen who answered.
        devices_[number]->setFault(
            sim::parseFault("answer=0\\nOK\\nUnit=" + Unit::markOf(number) + "\\n;path=PTZ.cgi"));
    }

    /// One fault at a time: two could make a broken answer look whole, as a cut body does without a length.
    void spoil(unsigned int number) {
        heal(number);
        std::string text = kFaults[pick(std::size(kFaults))];
        const std::size_t other = (number + 1 + pick(devices_.size() - 1)) % devices_.size();
        text = replaced(std::move(text), "%M", Unit::markOf(number));
        text = replaced(std::move(text), "%P", std::to_string(devices_[other]->port()));
        // Connections that are turned away have neither a path nor a number.
        const bool isOfRequests = text != "refuse" && text != "reset-connection";
        if (isOfRequests)
            text += kPlaces[pick(std::size(kPlaces))];
        if (isOfRequests && pick(2) == 0)
            text += ";count=" + std::to_string(1 + pick(3));
        devices_[number]->setFault(sim::parseFault(text));
        ++shown_;
    }

    std::mt19937 random_;
    std::vector<std::unique_ptr<sim::SimulatedDevice>> devices_;
    unsigned long shown_ = 0;
};

void say(int answers, const std::string& text) {
    if (::write(answers, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("nobody listens");
}

void serve(int commands, int answers, Devices& devices) {
    say(answers, devices.ports());
    bool misbehaving = false;
    for (unsigned int step = 0;; ++step) {
        pollfd waiting{commands, POLLIN, 0};
        if (::poll(&waiting, 1, kStepMilliseconds) > 0) {
            char command = 0;
            if (::read(commands, &command, 1) != 1)
                return; // the other side is gone
            misbehaving = command == 'm';
            if (!misbehaving) {
                devices.healAll();
                say(answers, std::to_string(devices.shown()) + "\n");
            }
        }
        if (misbehaving)
            devices.change();
        if (step % kStepsPerForgetting == 0)
            devices.forget();
    }
}

} // namespace

int serveFleet(int commands, int answers, unsigned int count, unsigned int seed) {
    try {
        Devices devices(count, seed);
        serve(commands, answers, devices);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak: the devices: %s\n", error.what());
        return 1;
    }
}

} // namespace koine::soak
