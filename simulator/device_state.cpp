#include "simulator/device_state.h"

#include "simulator/set_check.h"
#include "text/tokens.h"
#include "text/words.h"

#include <array>

namespace koine::sim {
namespace {

constexpr std::string_view kMediaPrefix = "Media.";
constexpr std::array<std::string_view, 5> kCommonCategories = {"video", "camera", "notification", "misc",
                                                               "videoanalytics"};
constexpr std::array<std::string_view, 5> kLearnedAnswers = {"capability_channel1", "capability", "machine",
                                                             "login", "media"};

// A hostile client may ask for "*,*,*,..." or set a new key with every request; a real device has no memory
// for either.
constexpr std::size_t kMostPatterns = 64;
constexpr std::size_t kMostKeys = 20000;

std::string mediaAnswerName(unsigned int channel) {
    return channel == 1 ? "media" : "media_channel" + std::to_string(channel);
}

PairList mediaOfChannel(const DeviceModel& model, unsigned int channel) {
    const PairList* own = model.answer(mediaAnswerName(channel));
    if (own == nullptr)
        own = model.answer("media");
    return own == nullptr ? PairList() : *own;
}

Settings settingsOf(const DeviceModel& model) {
    Settings settings;
    for (const std::string_view category : kCommonCategories)
        if (const PairList* pairs = model.answer(category))
            for (const auto& [key, value] : *pairs)
                settings.common.set(key, value);
    for (unsigned int channel = 1; channel <= model.channels(); ++channel)
        settings.media.push_back(mediaOfChannel(model, channel));
    return settings;
}

void appendMatches(std::string& text, std::string_view pattern, const PairList& pairs) {
    for (const auto& [key, value] : pairs)
        if (matches(pattern, key))
            text.append(key).append("=").append(value).append("\n");
}

/// A whole category may well be empty; anything else that is asked for must be there.
bool mayBeEmpty(std::string_view pattern) {
    return pattern == "*" || (!pattern.empty() && pattern.back() == '*' && isSettable(pattern));
}

} // namespace

PairList& Settings::listOf(std::string_view key, unsigned int channel) {
    return startsWithIgnoreCase(key, kMediaPrefix) ? media.at(channel - 1) : common;
}

const PairList& Settings::listOf(std::string_view key, unsigned int channel) const {
    return startsWithIgnoreCase(key, kMediaPrefix) ? media.at(channel - 1) : common;
}

DeviceState::DeviceState(const DeviceModel& model) : model_(model), settings_(settingsOf(model)) {}

std::string DeviceState::value(std::string_view key, unsigned int channel) const {
    if (channel < 1 || channel > model_.channels())
        return {};
    const std::lock_guard lock(mutex_);
    if (const std::string* held = settings_.listOf(key, channel).find(key))
        return *held;
    for (const std::string_view name : kLearnedAnswers)
        if (const PairList* learned = model_.answer(name))
            if (const std::string* held = learned->find(key))
                return *held;
    return {};
}

std::optional<std::string> DeviceState::get(std::string_view patterns, unsigned int channel) const {
    const std::lock_guard lock(mutex_);
    std::string text;
    std::size_t count = 0;
    for (const std::string_view pattern : Tokens(patterns, ",")) {
        if (++count > kMostPatterns)
            return std::nullopt;
        const std::size_t before = text.size();
        appendMatches(text, pattern, settings_.media.at(channel - 1));
        appendMatches(text, pattern, settings_.common);
        if (text.size() == before && !mayBeEmpty(pattern))
            return std::nullopt;
    }
    return count == 0 ? std::nullopt : std::optional(text);
}

bool DeviceState::set(const std::vector<QueryItem>& items, unsigned int channel) {
    const std::lock_guard lock(mutex_);
    Settings next = settings_;
    for (const QueryItem& item : items) {
        if (!isSettable(item.key) || !isAcceptable(model_, next, channel, item))
            return false;
        if (item.hasValue)
            next.listOf(item.key, channel).set(item.key, item.value);
    }
    // What a line asks for is checked as a whole: a size may stand before the encoding that it goes with.
    for (const QueryItem& item : items)
        if (!sizeIsOffered(model_, next, channel, item.key))
            return false;
    if (next.common.size() + next.media.at(channel - 1).size() > kMostKeys)
        return false;
    settings_ = std::move(next);
    return true;
}

} // namespace koine::sim
