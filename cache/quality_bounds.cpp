// The request-wide quality scale. Its setters keep the capability cache in step, where hosts read it.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "text/numbers.h"

using namespace koine;

namespace {

constexpr float kTenth = 0.1F; // the host's scale has ten units

} // namespace

void BaseRequest::setQualityStep(float step) {
    qualityStep_ = step;
    entry(capability_.map, keys::kQualityStep) = generalText(step);
}

void BaseRequest::setSettingQualitySrcMax(float quality) {
    qualitySrcMax_ = quality;
    setQualityStep((getSettingQualitySrcMax() - getSettingQualitySrcMin()) * kTenth);
    entry(capability_.map, keys::kQualitySrcMax) = generalText(qualitySrcMax_);
}

void BaseRequest::setSettingQualitySrcMin(float quality) {
    qualitySrcMin_ = quality;
    setQualityStep((getSettingQualitySrcMax() - getSettingQualitySrcMin()) * kTenth);
    entry(capability_.map, keys::kQualitySrcMin) = generalText(qualitySrcMin_);
}
