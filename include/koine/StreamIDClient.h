/// @file
/// The record of one stream user.
#pragma once

#include "koine/IBase.h"
#include "koine/types.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <string>
#include <string_view>

/// Everything the library knows about one stream of the host: what was asked for, the transport, the media
/// profile that serves it, the encoder limits and the current quality.
///
/// Always held by `boost::shared_ptr`. The fields carry no lock of their own; in practice they are read and
/// written under the lock of the request object. A subclass may override any operation; the library calls
/// them through the virtual table only. The order of the virtual operations never changes.
///
/// Sizes are in pixels, rates in frames per second, bit rate in the device's unit. Null texts count as empty
/// where nothing else is said. Returned pointers stay valid until the value is changed.
class KOINE_EXPORT StreamIDClient : private boost::noncopyable {
public:
    StreamIDClient();
    virtual ~StreamIDClient();

    /// Reads the set-up text (`getInitStream`) into the fields. Unknown items are skipped, numbers that
    /// cannot be read leave the field as it was.
    /// @retval 1 always
    virtual int ParseStreamInit();

    /// The attached stream object; empty when none was attached or it has gone.
    virtual boost::shared_ptr<IBase> get_ibase_stream();
    /// Attaches a stream object. Only a weak reference is kept.
    virtual void set_ibase_stream(boost::shared_ptr<IBase> stream);

    virtual void set_strm_setting_channel(int channel);
    virtual int strm_setting_channel();
    virtual void set_userid(unsigned int uid);
    virtual unsigned int uid() const; ///< stays 0 until set: the registry does not write it
    virtual void set_userid_order(int order);
    virtual int get_userid_order() const;
    virtual void setVendor(const char* vendor);
    virtual const char* getVendor();
    virtual int profile_id() const;
    virtual void set_profile_id(int id);
    virtual const char* profile_token() const;
    virtual void set_strm_setting_no(int number);
    virtual int strm_setting_no();
    virtual void setInitStream(const char* text);
    virtual std::string getInitStream();

    /// The setters of stream texts also write the user's stream set-up map ("StreamSetup.Stream", ...).
    virtual void setSettingStream(const char* text);
    virtual void set_req_mode(_TOVLIN_REQUEST_MODE_DEF mode);
    virtual _TOVLIN_REQUEST_MODE_DEF get_req_mode() const;
    virtual void setStreamSettingCgiParam(const char* text); ///< map entry "StreamSetup.Param"
    virtual void setSettingStrmparam(const char* text);      ///< map entry "StreamSetup.Stream.Param"
    virtual void setSettingStrmparam1(const char* text);     ///< map entry "StreamSetup.Stream.Param1"
    virtual void set_strmp_innrparam(const char* text);      ///< map entry "StreamSetup.Stream.InnrParam"
    virtual void set_strmp_pre_innrparam(const char* text);  ///< map entry "StreamSetup.Stream.PreInnrParam"
    virtual void setSettingTranPro(const char* protocol);    ///< map entry "StreamSetup.Transport.Protocol"
    virtual void setSettingEnc(const char* encoding);        ///< null restores "H264"

    virtual int getSettingW();
    virtual void setSettingW(int width);
    virtual int getSettingH();
    virtual void setSettingH(int height);
    virtual int getSettingMaxW();
    virtual void setSettingMaxW(int width);
    virtual int getSettingMaxH();
    virtual void setSettingMaxH(int height);
    virtual int getSettingMaxW_Ui();
    virtual void setSettingMaxW_Ui(int width);
    virtual int getSettingMaxH_Ui();
    virtual void setSettingMaxH_Ui(int height);
    virtual int getSettingMinW_Ui();
    virtual void setSettingMinW_Ui(int width);
    virtual int getSettingMinH_Ui();
    virtual void setSettingMinH_Ui(int height);
    virtual float getNowQuality();
    virtual void setNowQuality(float quality);

    /// Both source-quality setters recompute the quality step: a tenth of the source's range.
    virtual float getSettingQualitySrcMax();
    virtual void setSettingQualitySrcMax(float quality);
    virtual float getSettingQualitySrcMin();
    virtual void setSettingQualitySrcMin(float quality);
    virtual float getQualityStep();
    virtual void setQualityStep(float step);
    virtual float getSettingQuality();
    virtual void setSettingQuality(float quality);
    virtual int getSettingFramerateSrcMax();
    virtual void setSettingFramerateSrcMax(int rate);
    virtual int getSettingFramerateSrcMin();
    virtual void setSettingFramerateSrcMin(int rate);
    virtual int getSettingFramerate();
    virtual void setSettingFramerate(int rate);
    virtual int getSettingBitrate();
    virtual void setSettingBitrate(int bitrate);
    virtual int getSettingGovLength();
    virtual void setSettingGovLength(int length);
    virtual int audio_in_live() const;
    virtual void set_audio_in_live(int live);
    virtual void set_strm_nvr_subchannel(int channel); ///< values below 1 are stored as 1
    virtual int strm_nvr_subchannel();
    virtual void setHaveSyncProfileToken(int synchronised);
    virtual int getHaveSyncProfileToken();
    /// The user's temporary key map, which the caller may change.
    virtual CgiMap& get_temp_cgicache_map();

    /// Sets the profile mode ("AUTO", "MOBILE", "ONLY_META", "ONLY_STATUS", ...) and the map entry
    /// "ProfileMode".
    void setProfileMode_1(const char* mode);

    // What the request object needs beyond the virtual operations.
    const std::string& profile_mode() const { return profileMode_; }
    void set_profile_token(std::string_view token) { profileToken_ = token; }
    const std::string& setting_stream() const { return settingStream_; }
    const std::string& transport_protocol() const { return transportProtocol_; }
    const std::string& encoding() const { return encoding_; }
    /// The stream set-up map: what the text setters wrote, and the host's default quality.
    const CgiMap& stream_setup_map() const { return streamSetup_; }

private:
    void recomputeQualityStep();

    boost::weak_ptr<IBase> stream_;
    std::string initStream_;
    std::string vendor_;
    int settingChannel_ = 0;
    unsigned int userId_ = 0;
    int userIdOrder_ = 0;
    int profileId_ = 0;
    std::string profileToken_ = "PROFILE-1";
    std::string profileMode_;
    int settingStreamNumber_ = 0;
    std::string settingStream_;
    std::string streamCgiParameter_;
    std::string streamParameter_;
    std::string streamParameter1_;
    std::string innerParameter_;
    std::string previousInnerParameter_;
    std::string transportProtocol_;
    std::string encoding_ = "H264";
    int width_ = 0;
    int height_ = 0;
    int maxWidth_ = 30000;
    int maxHeight_ = 30000;
    int maxWidthUi_ = 30000;
    int maxHeightUi_ = 30000;
    int minWidthUi_ = 0;
    int minHeightUi_ = 0;
    int frameRate_ = 0;
    int frameRateSrcMin_ = 1;
    int frameRateSrcMax_ = 30;
    float quality_ = -1.0F;
    float nowQuality_ = -1.0F;
    float qualityStep_ = 0.1F;
    float qualitySrcMin_ = 0.0F;
    float qualitySrcMax_ = 1.0F;
    int bitrate_ = 0;
    int govLength_ = 0;
    int audioInLive_ = 1;
    int nvrSubchannel_ = 1;
    _TOVLIN_REQUEST_MODE_DEF requestMode_ = TOVLIN_REQUEST_MODE_NONE;
    CgiMap streamSetup_;
    CgiMap temporaryCgiCache_;
    int haveSyncProfileToken_ = 0;
};
