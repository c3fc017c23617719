"""Settings of the process: they hold for all devices, for requests that begin later."""

from __future__ import annotations

import os
from typing import Any, Callable, Optional, Union

from koine._library import OK, TRACE_SINK, decoded, encoded, lib

_sink: Any = TRACE_SINK(0)  # the library keeps a plain pointer to what stands here


def library_version() -> str:
    """The version of the C library, like "1.2.3"."""
    return decoded(lib.koine_version())


def trace_to(sink: Optional[Callable[[str], None]]) -> None:
    """Hands each line of diagnostics to `sink`, on whatever thread traces, one at a time; None ends that.

    Passwords are masked. The sink must not use devices. `koine.trace_to(logging.getLogger("koine").debug)` is
    enough for a log.
    """
    global _sink
    after = TRACE_SINK(0)
    if sink is not None:
        wanted = sink

        def take(line: bytes, _context: object) -> None:
            wanted(decoded(line))

        after = TRACE_SINK(take)
    lib.koine_trace_to(after, None)
    _sink = after  # only now may the former one go


def _milliseconds(seconds: float) -> int:
    if not 0 <= seconds <= 4_000_000:
        raise ValueError(f"a time limit of {seconds} seconds is out of range")
    return max(1, round(seconds * 1000)) if seconds else 0


def set_request_time_limit(seconds: float) -> None:
    """Time limit of a whole request; 0 restores the default, 30 seconds."""
    lib.koine_set_request_time_limit(_milliseconds(seconds))


def set_connect_time_limit(seconds: float) -> None:
    """Time limit for making a connection; 0 restores the default, 10 seconds."""
    lib.koine_set_connect_time_limit(_milliseconds(seconds))


def set_tls_verification(verify: bool) -> None:
    """Whether devices that speak https must show a certificate that is signed and names them."""
    lib.koine_set_tls_verification(int(verify))


def set_tls_authority_file(path: Optional[Union[str, "os.PathLike[str]"]]) -> None:
    """PEM file of the authorities to trust; None restores the system's own."""
    if lib.koine_set_tls_authority_file(None if path is None else encoded(os.fspath(path))) != OK:
        raise MemoryError


def set_tls_pinned_key(key: Optional[str]) -> None:
    """The one public key that devices may have, like "sha256//" and its base64 digest; None ends that."""
    if lib.koine_set_tls_pinned_key(None if key is None else encoded(key)) != OK:
        raise MemoryError
