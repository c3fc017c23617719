#include "bench/wire_device.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>

namespace koine::bench {
namespace {

sim::Options optionsFor(const sim::DeviceModel& model) {
    sim::Options options(model);
    options.auth = sim::AuthKind::digestMd5;
    options.username = kUser;
    options.password = kPassword;
    return options;
}

/// A folder that is gone afterwards.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "koine-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot make a folder for a device model: " + pattern);
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path_ / name) << text;
    }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

struct ModelFile {
    const char* name;
    const char* line; ///< in `DeviceTexts`
};

constexpr std::array<ModelFile, 8> kModelFiles = {{
    {"login.txt", "Login.cgi"},
    {"capability.txt", "Capability.cgi"},
    {"media.txt", "category=Media."},
    {"video.txt", "category=Video."},
    {"camera.txt", "category=Camera."},
    {"notification.txt", "category=Notification."},
    {"misc.txt", "category=Misc."},
    {"videoanalytics.txt", "category=VideoAnalytics."},
}};

} // namespace

WireDevice::WireDevice(const sim::DeviceModel& model, unsigned int roundTripMilliseconds)
    : peer_(optionsFor(model)) {
    if (roundTripMilliseconds > 0)
        peer_.setFault(sim::Fault(sim::FaultKind::delay, roundTripMilliseconds));
}

boost::shared_ptr<DialectRequest> openWireDevice(const std::string& url, unsigned int connections) {
    DeviceOptions options;
    options.username = kUser;
    options.password = kPassword;
    options.connections = connections;
    return openDevice(url, options);
}

std::vector<std::string> WireDevice::answeredLines() const {
    std::vector<std::string> lines;
    for (const sim::LoggedRequest& request : peer_.requests())
        if (request.status == 200)
            lines.push_back(request.line);
    return lines;
}

sim::DeviceModel generatedModel(const DeviceShape& shape) {
    const TemporaryFolder folder;
    folder.write("model.txt", "description=Generated for measuring\nchannels=1\n");
    const std::shared_ptr<const DeviceTexts> texts = deviceTexts(shape);
    for (const ModelFile& file : kModelFiles)
        folder.write(file.name, texts->at(file.line));
    return sim::DeviceModel::load(folder.path());
}

} // namespace koine::bench
