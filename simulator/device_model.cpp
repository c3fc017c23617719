#include "simulator/device_model.h"

#include "simulator/answer_file.h"
#include "text/numbers.h"
#include "text/tokens.h"
#include "text/words.h"

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

namespace koine::sim {

namespace fs = std::filesystem;

struct ModelData {
    std::string name;
    std::string description;
    unsigned int channels = 1;
    bool readsChannel = false;
    std::vector<std::string> acknowledged;
    std::vector<std::string> lacking;
    std::vector<std::string> anyText;
    std::map<std::string, PairList, std::less<>> answers;
};

namespace {

constexpr std::string_view kDescriptionFile = "model.txt";
constexpr std::string_view kMediaOfChannel = "media_channel";
constexpr unsigned int kMostChannels = 256;

constexpr std::array<std::string_view, 10> kAnswerNames = {
    "login", "capability", "capability_channel1", "machine", "media",
    "video", "camera",     "notification",        "misc",    "videoanalytics"};

constexpr std::string_view kSeparators = " \t";

void appendWords(std::vector<std::string>& words, std::string_view text) {
    for (const std::string_view word : Tokens(text, kSeparators))
        words.emplace_back(word);
}

/// The number in "media_channelN"; 0 for every other name.
unsigned int channelOfMedia(std::string_view name) {
    if (!startsWith(name, kMediaOfChannel))
        return 0;
    const std::string_view digits = name.substr(kMediaOfChannel.size());
    const LeadingLong number = leadingLong(digits);
    const bool whole = number.length == digits.size() && number.value > 1 && number.value <= kMostChannels;
    return whole ? static_cast<unsigned int>(number.value) : 0;
}

/// One "key=value" line of model.txt; says what is wrong with it, nothing when it is right.
std::string readSetting(ModelData& data, std::string_view key, std::string_view value) {
    if (key == "description") {
        data.description = value;
    } else if (key == "channels") {
        const long channels = readLong(value);
        if (channels < 1 || channels > static_cast<long>(kMostChannels))
            return "\"channels\" is a number from 1 to 256";
        data.channels = static_cast<unsigned int>(channels);
    } else if (key == "reads_channel") {
        if (value != "yes" && value != "no")
            return "\"reads_channel\" is \"yes\" or \"no\"";
        data.readsChannel = value == "yes";
    } else if (key == "acknowledges") {
        appendWords(data.acknowledged, value);
    } else if (key == "lacks") {
        appendWords(data.lacking, value);
    } else if (key == "any_text") {
        appendWords(data.anyText, value);
    } else {
        return "unknown key \"" + std::string(key) +
               "\"; known are description, channels, reads_channel, acknowledges, lacks and any_text";
    }
    return {};
}

void readDescription(ModelData& data, const fs::path& file) {
    const std::string content = fileText(file);
    std::string_view text = content;
    for (std::size_t line = 1; !text.empty(); ++line) {
        const std::string_view setting = skipBlanks(takeLine(text));
        if (setting.empty() || setting.front() == '#')
            continue;
        const std::size_t equals = setting.find('=');
        if (equals == std::string_view::npos)
            failAtLine(file.string(), line, "expected \"key=value\" or a comment that begins with \"#\"");
        const std::string wrong =
            readSetting(data, setting.substr(0, equals), skipBlanks(setting.substr(equals + 1)));
        if (!wrong.empty())
            failAtLine(file.string(), line, wrong);
    }
}

bool isAnswerName(std::string_view name) {
    return std::find(kAnswerNames.begin(), kAnswerNames.end(), name) != kAnswerNames.end() ||
           channelOfMedia(name) != 0;
}

void readAnswers(ModelData& data, const fs::path& folder) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const fs::path& file = entry.path();
        if (file.extension() != ".txt" || file.filename() == kDescriptionFile)
            continue;
        const std::string name = file.stem().string();
        if (!isAnswerName(name))
            throw std::runtime_error(file.string() +
                                     " is no answer text that a device knows; rename or remove it "
                                     "(simulator/README.md lists the names)");
        if (channelOfMedia(name) > data.channels)
            throw std::runtime_error(file.string() +
                                     " belongs to a channel that the model does not have; raise "
                                     "\"channels\" in model.txt");
        data.answers.emplace(name, answerPairs(fileText(file), file.string()));
    }
}

fs::path withoutTrailingSlash(const fs::path& folder) {
    return folder.has_filename() ? folder : folder.parent_path();
}

} // namespace

DeviceModel DeviceModel::load(const fs::path& folder) {
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored))
        throw std::runtime_error("no device model at " + folder.string() +
                                 "; a model is a folder with model.txt and answer texts");
    auto data = std::make_shared<ModelData>();
    data->name = withoutTrailingSlash(folder).filename().string();
    readDescription(*data, folder / kDescriptionFile);
    readAnswers(*data, folder);
    if (data->answers.count("login") == 0)
        throw std::runtime_error("device model " + folder.string() +
                                 " has no login.txt; every device answers \"Login.cgi\", so add it");
    return DeviceModel(std::move(data));
}

const std::string& DeviceModel::name() const noexcept { return data_->name; }
const std::string& DeviceModel::description() const noexcept { return data_->description; }
unsigned int DeviceModel::channels() const noexcept { return data_->channels; }
bool DeviceModel::readsChannel() const noexcept { return data_->readsChannel; }

bool DeviceModel::acknowledges(std::string_view cgi) const {
    const auto& known = data_->acknowledged;
    return std::find(known.begin(), known.end(), cgi) != known.end();
}

bool DeviceModel::lacks(std::string_view requestLine) const {
    return std::any_of(
        data_->lacking.begin(), data_->lacking.end(),
        [requestLine](const std::string& beginning) { return startsWith(requestLine, beginning); });
}

bool DeviceModel::takesAnyText(std::string_view key) const {
    return std::any_of(data_->anyText.begin(), data_->anyText.end(),
                       [key](const std::string& pattern) { return matches(pattern, key); });
}

const PairList* DeviceModel::answer(std::string_view name) const {
    const auto found = data_->answers.find(name);
    return found == data_->answers.end() ? nullptr : &found->second;
}

fs::path modelFolder() {
    std::error_code ignored;
    const fs::path program = fs::read_symlink("/proc/self/exe", ignored);
    fs::path besideProgram = (program.parent_path() / KOINE_MODELS_FROM_PROGRAM).lexically_normal();
    if (fs::is_directory(besideProgram, ignored))
        return besideProgram;
#ifdef KOINE_MODEL_DIR
    if (fs::is_directory(KOINE_MODEL_DIR, ignored))
        return KOINE_MODEL_DIR;
#endif
    return KOINE_INSTALLED_MODEL_DIR;
}

std::vector<std::string> modelNames(const fs::path& folder) {
    std::error_code failure;
    fs::directory_iterator entries(folder, failure);
    if (failure)
        throw std::runtime_error("cannot read the device models in " + folder.string() + ": " +
                                 failure.message() + "; name the folder that holds them");
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : entries)
        if (fs::exists(entry.path() / kDescriptionFile, failure))
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

DeviceModel builtinModel(const std::string& name, const fs::path& folder) {
    const std::vector<std::string> names = modelNames(folder);
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        std::string known;
        for (const std::string& other : names)
            known += (known.empty() ? "" : ", ") + other;
        throw std::runtime_error("no device model \"" + name + "\" in " + folder.string() +
                                 "; there are: " + known);
    }
    return DeviceModel::load(folder / name);
}

} // namespace koine::sim
