/// @file
/// Device models: what a simulated device is, read from a folder of texts.
#pragma once

#include "simulator/pair_list.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace koine::sim {

struct ModelData;

/// A kind of device. Cheap to copy; never changes, so that any number of devices may share it.
class DeviceModel {
public:
    /// Reads `model.txt` and the answer texts of a folder; simulator/README.md lists them.
    /// @throws std::runtime_error naming the file, the line, what is wrong and what to do
    static DeviceModel load(const std::filesystem::path& folder);

    /// The folder's name.
    const std::string& name() const noexcept;
    const std::string& description() const noexcept;

    /// Number of video channels; channels are counted from 1.
    unsigned int channels() const noexcept;

    /// Whether "ch=" in a "Config.cgi" line chooses the channel whose media profiles are meant.
    bool readsChannel() const noexcept;

    /// Whether the device answers a CGI that it only acknowledges, for example "PTZ.cgi".
    bool acknowledges(std::string_view cgi) const;

    /// Whether the device does not know a request line that other devices know: it answers with HTTP 404.
    bool lacks(std::string_view requestLine) const;

    /// Whether a key takes any text although the value it holds looks like a number.
    bool takesAnyText(std::string_view key) const;

    /// The pairs of an answer text, for example "capability"; null when the model has no such text.
    const PairList* answer(std::string_view name) const;

private:
    explicit DeviceModel(std::shared_ptr<const ModelData> data) : data_(std::move(data)) {}

    std::shared_ptr<const ModelData> data_;
};

/// Where the models that come with Koine are: in the installed tree that the program belongs to, else in the
/// source tree, else where they were installed.
std::filesystem::path modelFolder();

/// Names of the models in a folder, sorted.
/// @throws std::runtime_error when the folder cannot be read
std::vector<std::string> modelNames(const std::filesystem::path& folder = modelFolder());

/// A model of a folder by its name.
/// @throws std::runtime_error for an unknown name, listing the known ones
DeviceModel builtinModel(const std::string& name, const std::filesystem::path& folder = modelFolder());

} // namespace koine::sim
