"""The C library behind all this: where it is, and what its operations take."""

from __future__ import annotations

import ctypes
import os
from pathlib import Path
from typing import Iterator, Optional

_NAME = "libkoine_c.so.0"

OK = 1
NO_RESOURCE = -8


class Options(ctypes.Structure):
    """koine_options."""

    _fields_ = [
        ("size", ctypes.c_size_t),
        ("username", ctypes.c_char_p),
        ("password", ctypes.c_char_p),
        ("vendor", ctypes.c_char_p),
        ("uri_pattern", ctypes.c_char_p),
        ("rtsp_port", ctypes.c_uint),
        ("credentials_in_uri", ctypes.c_int),
        ("connections", ctypes.c_uint),
    ]


VISITOR = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_char_p, ctypes.c_char_p, ctypes.c_void_p)
TRACE_SINK = ctypes.CFUNCTYPE(None, ctypes.c_char_p, ctypes.c_void_p)

_TEXT_OUT = ctypes.POINTER(ctypes.c_void_p)  # freed with koine_free, so not c_char_p, which would copy and forget
_OPERATIONS = {
    "koine_open": (ctypes.c_int, [ctypes.c_char_p, ctypes.POINTER(Options), _TEXT_OUT, _TEXT_OUT]),
    "koine_close": (None, [ctypes.c_void_p]),
    "koine_disconnect": (None, [ctypes.c_void_p]),
    "koine_address": (ctypes.c_char_p, [ctypes.c_void_p]),
    "koine_request": (ctypes.c_int, [ctypes.c_void_p, ctypes.c_uint, ctypes.c_char_p, _TEXT_OUT]),
    "koine_prepare_media": (ctypes.c_int, [ctypes.c_void_p, ctypes.c_uint]),
    "koine_requests_sent": (ctypes.c_uint, [ctypes.c_void_p]),
    "koine_requests_failed": (ctypes.c_uint, [ctypes.c_void_p]),
    "koine_status": (ctypes.c_int, [ctypes.c_char_p]),
    "koine_visit_values": (ctypes.c_int, [ctypes.c_char_p, VISITOR, ctypes.c_void_p]),
    "koine_result_text": (ctypes.c_char_p, [ctypes.c_int]),
    "koine_free": (None, [ctypes.c_void_p]),
    "koine_version": (ctypes.c_char_p, []),
    "koine_trace_to": (None, [TRACE_SINK, ctypes.c_void_p]),
    "koine_set_request_time_limit": (None, [ctypes.c_uint]),
    "koine_set_connect_time_limit": (None, [ctypes.c_uint]),
    "koine_set_tls_verification": (None, [ctypes.c_int]),
    "koine_set_tls_authority_file": (ctypes.c_int, [ctypes.c_char_p]),
    "koine_set_tls_pinned_key": (ctypes.c_int, [ctypes.c_char_p]),
}


def _places() -> Iterator[str]:
    """Where the library may be: where the environment says, beside this package in an installed tree, where the
    system looks."""
    chosen = os.environ.get("KOINE_LIBRARY")
    if chosen:
        yield chosen
        return
    for folder in list(Path(__file__).resolve().parents)[2:5]:
        for place in (folder, folder / "lib64", *sorted(folder.glob("*-linux-*"))):
            if (place / _NAME).is_file():
                yield str(place / _NAME)
    yield _NAME


def _load() -> ctypes.CDLL:
    problem: Optional[OSError] = None
    for place in _places():
        try:
            library = ctypes.CDLL(place)
        except OSError as error:
            problem = error
            continue
        for name, (result, arguments) in _OPERATIONS.items():
            operation = getattr(library, name)
            operation.restype = result
            operation.argtypes = arguments
        return library
    raise ImportError(
        f"Koine's C library cannot be loaded: {problem}; install {_NAME}, or name its file in KOINE_LIBRARY"
    )


lib = _load()


def encoded(text: str) -> bytes:
    """A text for the library, which takes none with a NUL in it."""
    if "\0" in text:
        raise ValueError("a text for a device cannot hold a NUL character")
    return text.encode("utf-8", "surrogateescape")


def decoded(text: Optional[bytes]) -> str:
    """A text from the library."""
    return "" if text is None else text.decode("utf-8", "replace")


def taken(text: ctypes.c_void_p) -> bytes:
    """Takes over a text that an operation gave."""
    if not text:
        return b""
    try:
        return ctypes.string_at(text)
    finally:
        lib.koine_free(text)
