// Reading answers, for hosts in C; and words for results.

#include "devices/answer.h"
#include "capi/edge.h"
#include "koine/koine.h"
#include "koine/types.h"
#include "text/owned_text.h"

#include <array>
#include <cstdlib>

namespace {

using namespace koine;

static_assert(KOINE_OK == +kOk && KOINE_NOT_BUILT == +kNotBuilt && KOINE_UNAUTHORIZED == +kAuthFailed &&
              KOINE_REFUSED == +kRefused && KOINE_NO_RESOURCE == +kNoResource &&
              KOINE_NO_FUNCTION == +kNoFunction);

struct Meaning {
    int result;
    const char* text;
};

constexpr std::array<Meaning, 10> kMeanings = {{
    {KOINE_OK, "answered"},
    {KOINE_NOT_BUILT, "no answer could be built; the stream may not be set up"},
    {KOINE_UNAUTHORIZED, "the device refused the user name or password"},
    {KOINE_REFUSED, "refused: a value is not allowed, or the device cannot do this"},
    {KOINE_CANNOT_CONNECT, "cannot connect; check the address, the port and that the device is on"},
    {KOINE_TIMEOUT, "no answer within the time limit"},
    {KOINE_BROKEN, "the connection or the answer was broken"},
    {KOINE_HTTP_ERROR, "the device answered with an HTTP error"},
    {KOINE_NO_RESOURCE, "something is missing: a setting that could not be read, or memory"},
    {KOINE_NO_FUNCTION, "the device does not have this function"},
}};

CgiMap valuesOf(const char* answer) { return Answer{kOk, orEmpty(answer)}.values(); }

} // namespace

int koine_status(const char* answer) { return answerStatus(viewOf(answer)); }

char* koine_value(const char* answer, const char* key) {
    char* text = nullptr;
    atEdge([&] {
        const CgiMap values = valuesOf(answer);
        const auto found = values.find(viewOf(key));
        if (found != values.end())
            text = copyText(found->second).release();
        return +KOINE_OK;
    });
    return text;
}

int koine_visit_values(const char* answer, koine_visitor visit, void* context) {
    if (visit == nullptr)
        return KOINE_OK;
    return atEdge([&] {
        for (const auto& [key, value] : valuesOf(answer))
            if (visit(key.c_str(), value.c_str(), context) != 0)
                break;
        return +KOINE_OK;
    });
}

const char* koine_result_text(int result) {
    for (const Meaning& meaning : kMeanings)
        if (meaning.result == result)
            return meaning.text;
    return "the device refused with a status of its own";
}

void koine_free(char* text) { std::free(text); }
