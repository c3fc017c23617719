#include "simulator/dialect.h"

#include "text/numbers.h"
#include "text/words.h"

#include <algorithm>
#include <array>

namespace koine::sim {
namespace {

constexpr std::string_view kSuccess = "0\nOK\n";
constexpr unsigned int kNotFound = 404;

// Items of a "Config.cgi" line that are no settings.
constexpr std::array<std::string_view, 2> kAddressingKeys = {"action", "ch"};

CgiAnswer refused() { return {200, std::string(kUnknownParameter)}; }
CgiAnswer notFound() { return {kNotFound, "no such function\n"}; }
CgiAnswer done(std::string_view pairs = {}) { return {200, std::string(kSuccess).append(pairs)}; }

bool isAddressing(const QueryItem& item) {
    return std::find(kAddressingKeys.begin(), kAddressingKeys.end(), item.key) != kAddressingKeys.end();
}

} // namespace

CgiAnswer Dialect::answer(const RequestTarget& request) const {
    if (model_.lacks(request.line))
        return notFound();
    if (request.cgi == "Login.cgi")
        return stored("login");
    if (request.cgi == "Capability.cgi")
        return capability(request);
    if (request.cgi == "Machine.cgi")
        return machine(request);
    if (request.cgi == "Config.cgi")
        return config(request);
    return model_.acknowledges(request.cgi) ? done() : notFound();
}

CgiAnswer Dialect::stored(std::string_view name) const {
    const PairList* pairs = model_.answer(name);
    return pairs == nullptr ? notFound() : done(printed(*pairs));
}

CgiAnswer Dialect::capability(const RequestTarget& request) const {
    const bool ofChannel1 =
        request.valueOf("channel") == "1" && model_.answer("capability_channel1") != nullptr;
    if (model_.answer("capability") != nullptr && request.valueOf("action") != "get")
        return refused();
    return stored(ofChannel1 ? "capability_channel1" : "capability");
}

CgiAnswer Dialect::machine(const RequestTarget& request) const {
    if (model_.answer("machine") != nullptr && request.valueOf("action") != "get_capability")
        return refused();
    return stored("machine");
}

CgiAnswer Dialect::config(const RequestTarget& request) const {
    const unsigned int channel = channelOf(request);
    if (channel == 0)
        return refused();
    const std::string_view action = request.valueOf("action");
    if (action == "get")
        return configGet(request, channel);
    return action == "set" ? configSet(request, channel) : refused();
}

CgiAnswer Dialect::configGet(const RequestTarget& request, unsigned int channel) const {
    const auto pairs = state_.get(request.valueOf("category"), channel);
    return pairs ? done(*pairs) : refused();
}

CgiAnswer Dialect::configSet(const RequestTarget& request, unsigned int channel) const {
    std::vector<QueryItem> settings = request.items;
    settings.erase(std::remove_if(settings.begin(), settings.end(), isAddressing), settings.end());
    return state_.set(settings, channel) ? done() : refused();
}

/// 0 for a channel that the device does not have. One that does not read "ch" is its only channel.
unsigned int Dialect::channelOf(const RequestTarget& request) const {
    const std::string_view text = request.valueOf("ch");
    if (!model_.readsChannel() || text.empty())
        return 1;
    const long channel = readLong(text);
    return channel >= 1 && channel <= static_cast<long>(model_.channels())
               ? static_cast<unsigned int>(channel)
               : 0;
}

} // namespace koine::sim
