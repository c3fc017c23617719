// The media profiles before anybody started a stream.

#include "devices/prepare_media.h"

#include "devices/answer.h"
#include "request/object_lock.h"

namespace koine {

int prepareMedia(DialectRequest& device, unsigned int uid) {
    const ObjectLock lock(device);
    const Answer capability = request(device, uid, "Capability.cgi?action=get");
    if (!capability.ok())
        return capability.result;
    const boost::shared_ptr<StreamIDClient> user = device.get_streamid_client(uid);
    user->setSettingQualitySrcMax(device.getSettingQualitySrcMax());
    user->setSettingQualitySrcMin(device.getSettingQualitySrcMin());
    user->setQualityStep(device.getQualityStep());
    user->setSettingFramerateSrcMax(device.getSettingFramerateSrcMax());
    user->setSettingFramerateSrcMin(device.getSettingFramerateSrcMin());
    device.getCacheConfigMedia(uid, 0, nullptr, nullptr, nullptr);
    return kOk;
}

} // namespace koine
