"""What devices tell."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Dict, Mapping, Optional, Tuple


@dataclass(frozen=True)
class Answer:
    """The answer to one line."""

    text: str
    """The text as it came."""
    values: Mapping[str, str] = field(default_factory=dict)
    """Its key=value lines."""

    def __getitem__(self, key: str) -> str:
        return self.values[key]


@dataclass(frozen=True)
class Profile:
    """A media profile with its encoder settings; None for what the device does not tell."""

    number: int
    token: str
    live: str
    """Who may view: "ANY" or "MOBILE"."""
    encoding: str
    size: Optional[Tuple[int, int]]
    frame_rate: Optional[float]
    quality: Optional[float]
    """From 0 to 10."""
    bitrate: Optional[int]
    """In the device's unit, mostly kbit/s."""
    encodings: Tuple[str, ...]
    """What it can encode."""


@dataclass(frozen=True)
class Info:
    """What a device is and can do."""

    product: str
    device: str
    """The kind of device, for example "IP CAMERA"."""
    model: str
    channels: int
    encodings: Tuple[str, ...]
    sizes: Tuple[str, ...]
    profiles: Tuple[Profile, ...]
    login: Mapping[str, str] = field(repr=False)
    """All that the device said when it was logged into."""
    capability: Mapping[str, str] = field(repr=False)
    """All its capabilities, in the keys of the dialect."""


@dataclass(frozen=True)
class Stream:
    """A stream that was set up."""

    uri: str
    token: str
    """Of the media profile that serves it; empty when the device has none."""
    values: Mapping[str, str] = field(repr=False)
    """What the stream became: "Stream.Profile.Encoding" and the like."""


_PROFILE = "Media.Profiles.Profile"
_MOST_PROFILES = 4096  # a device that claims more is not believed


def _words(text: str) -> Tuple[str, ...]:
    return tuple(word.strip() for word in text.split(",") if word.strip())


def _number(text: str) -> Optional[float]:
    try:
        return float(text)
    except ValueError:
        return None


def _whole(text: str) -> Optional[int]:
    number = _number(text)
    return int(number) if number is not None and abs(number) < 2**31 else None


def _profile(media: Mapping[str, str], number: int) -> Profile:
    def value(key: str) -> str:
        return media.get(f"{_PROFILE}{number}.{key}", "")

    encoder = "VideoEncoderConfiguration."
    width = _whole(value(encoder + "Resolution.Width"))
    height = _whole(value(encoder + "Resolution.Height"))
    return Profile(
        number=number,
        token=value("token"),
        live=value("Tovlin.AllowLive"),
        encoding=value(encoder + "Encoding"),
        size=(width, height) if width is not None and height is not None else None,
        frame_rate=_number(value(encoder + "RateControl.FrameRateLimit")),
        quality=_number(value(encoder + "Quality")),
        bitrate=_whole(value(encoder + "RateControl.BitrateLimit")),
        encodings=_words(value(encoder + "EncodingList")),
    )


def profiles_in(media: Mapping[str, str]) -> Tuple[Profile, ...]:
    """The profiles in an answer to "Media.*"."""
    count = min(_whole(media.get("Media.Profiles.Count", "0")) or 0, _MOST_PROFILES)
    return tuple(_profile(media, number) for number in range(1, count + 1))


def info_from(login: Dict[str, str], capability: Dict[str, str], media: Mapping[str, str]) -> Info:
    """Puts together what the answers say."""
    return Info(
        product=login.get("Product-Name", ""),
        device=capability.get("Device", ""),
        model=capability.get("ID", ""),
        channels=_whole(capability.get("Capability.Video.Input.Channel", "")) or 0,
        encodings=_words(capability.get("Capability.Video.Format", "")),
        sizes=_words(capability.get("Capability.Video.Resolution.NxN", "")),
        profiles=profiles_in(media),
        login=login,
        capability=capability,
    )
