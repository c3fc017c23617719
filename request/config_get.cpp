// "Config.cgi?action=get": several categories, answered from their caches, in one text.

#include "cache/joined_answer.h"
#include "koine/BaseRequest.h"
#include "request/config_traces.h"
#include "text/owned_text.h"
#include "text/shortage.h"
#include "text/tokens.h"
#include "text/words.h"

#include <array>
#include <utility>

using namespace koine;

namespace {

/// Who answers a category, and the line of its failure in the trace.
struct CategoryStep {
    std::string_view prefix;
    int (*step)(BaseRequest& request, unsigned int uid, const char* url, const char* category, char** text);
    int traceLine;
};

template <int (BaseRequest::*Get)(unsigned int, int, const char*, const char*, char**)>
int category(BaseRequest& request, unsigned int uid, const char* url, const char* name, char** text) {
    return (request.*Get)(uid, 0, url, name, text);
}

int everything(BaseRequest& request, unsigned int uid, const char* /*url*/, const char* /*name*/,
               char** text) {
    return request.getCacheConfigAll(uid, 0, text);
}

constexpr std::array<CategoryStep, 7> kCategories = {{
    {"*", everything, 3305},
    {"Media.", category<&BaseRequest::getCacheConfigMedia>, 3311},
    {"Video.", category<&BaseRequest::getCacheConfigVideo>, 3317},
    {"Camera.", category<&BaseRequest::getCacheConfigCamera>, 3323},
    {"Notification.", category<&BaseRequest::getCacheConfigNotification>, 3329},
    {"Misc.", category<&BaseRequest::getCacheConfigMisc>, 3335},
    {"VideoAnalytics.", category<&BaseRequest::getCacheConfigVideoAnalytics>, 3341},
}};

const CategoryStep* categoryOf(std::string_view token) {
    for (const CategoryStep& known : kCategories)
        if (startsWithIgnoreCase(token, known.prefix))
            return &known;
    return nullptr;
}

} // namespace

int BaseRequest::handleConfigGet(unsigned int uid, char* url, char** answer) {
    if (answer == nullptr) {
        config_trace::noAnswerPointer(kRefused);
        return kRefused;
    }
    *answer = nullptr;
    const auto outOfMemory = [&](int line) {
        config_trace::getOutOfMemory(line, static_cast<int>(uid), strm_setting_channel(), kNoResource);
        return kNoResource;
    };
    const OwnedText copy = copyText(viewOf(url));
    if (!copy)
        return outOfMemory(3296);

    JoinedAnswer joined(JoinedAnswer::SeparatedFrom::parts);
    for (const std::string_view token : Tokens(copy.get(), "=,\n")) {
        const CategoryStep* const known = categoryOf(token);
        if (known == nullptr)
            continue;
        OwnedText text;
        const int result = orNoResource(
            [&] { return known->step(*this, uid, url, std::string(token).c_str(), OutText(text)); });
        if (result != kOk) {
            config_trace::categoryFailed(known->traceLine, orEmpty(url), result);
            *answer = joined.release(); // what was gathered so far
            return result;
        }
        if (!text)
            continue;
        switch (joined.append(std::move(text))) {
        case JoinedAnswer::Outcome::joined:
            break;
        case JoinedAnswer::Outcome::notCreated:
            return outOfMemory(3352);
        case JoinedAnswer::Outcome::notResized:
            return outOfMemory(3361);
        }
    }
    *answer = joined.release();
    return kOk;
}
