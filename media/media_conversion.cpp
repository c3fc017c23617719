// The conversion of the media map: what it depends on, and what it tells the request object.

#include "cache/key_map.h"
#include "koine/BaseRequest.h"
#include "media/profile_completion.h"
#include "media/profile_count.h"
#include "stream/required_client.h"

using namespace koine;

int BaseRequest::convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) {
    const boost::shared_ptr<StreamIDClient> held = get_streamid_client(uid);
    if (media->empty() || login->empty())
        return kOk;
    const std::string* claimed = findValue(*media, kProfileCountKey);
    const int count = claimed == nullptr ? 0 : boundedProfileCount(*claimed);
    if (count <= 0)
        return kOk;

    StreamIDClient& client = required(held);
    const PictureSize smallest{client.getSettingMinW_Ui(), client.getSettingMinH_Ui()};
    const PictureSize largest{client.getSettingMaxW_Ui(), client.getSettingMaxH_Ui()};
    const CompletionSettings settings{
        client.getQualityStep(),
        client.getSettingQualitySrcMin(),
        {areaOf(smallest), areaOf(largest)},
        client.getSettingFramerateSrcMin(),
        client.getSettingFramerateSrcMax(),
        getIsPellDevice() != 0,
    };
    if (completeProfiles(*media, capability_.map, settings, count))
        setHaveMobile(1);
    return kOk;
}
