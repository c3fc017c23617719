"""What can go wrong, as exceptions."""

from __future__ import annotations

from typing import Dict, Type


class KoineError(Exception):
    """A request that was not answered, or that the device refused.

    result: what the library said; 1 when it was the device that refused, by its status
    status: the status in the device's answer, 0 when it has none
    answer: the text that came all the same, maybe empty
    """

    def __init__(self, message: str, result: int, status: int = 0, answer: str = "") -> None:
        super().__init__(message)
        self.result = result
        self.status = status
        self.answer = answer


class AuthenticationError(KoineError):
    """The device refused the user name or password."""


class RefusedError(KoineError):
    """The device, or the library for it, refused: a value is not allowed, or something is missing."""


class NotSupportedError(RefusedError):
    """The device does not have this function."""


class UnreachableError(KoineError):
    """The device cannot be reached, or the connection broke."""


class ResponseTimeoutError(UnreachableError):
    """The device did not answer within the time limit."""


_BY_RESULT: Dict[int, Type[KoineError]] = {
    -1: AuthenticationError,
    -3: UnreachableError,
    -4: ResponseTimeoutError,
    -5: UnreachableError,
    -14: NotSupportedError,
}
_REFUSED_CREDENTIALS = -35


def error_class(result: int, status: int) -> Type[KoineError]:
    """The exception for a result, and for the status of an answer that came."""
    if _REFUSED_CREDENTIALS in (result, status):
        return AuthenticationError
    return _BY_RESULT.get(result, RefusedError)
