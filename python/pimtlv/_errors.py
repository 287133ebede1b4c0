"""The exceptions and warnings of pimtlv."""

from __future__ import annotations

from typing import Any, List, Optional


class Error(Exception):
    """Base of every error pimtlv raises for input it cannot use.

    ``sentence`` says why in words; ``offset`` is the byte offset in the
    stream it concerns, ``line`` the 1-based line of a text (each None where
    none applies).
    """

    def __init__(self, sentence: str, offset: Optional[int] = None,
                 line: Optional[int] = None) -> None:
        super().__init__(sentence)
        self.sentence = sentence
        self.offset = offset
        self.line = line
        self._documents: List[dict] = []

    @property
    def documents(self) -> List[dict]:
        """The documents of the items read before the error."""
        return self._documents


class MalformedStream(Error, ValueError):
    """A stream that cannot be read to its end.

    Everything before the fault is kept: ``documents`` (decode, check),
    ``elements`` (walk) and ``report`` (check).
    """

    def __init__(self, sentence: str, offset: Optional[int] = None,
                 line: Optional[int] = None) -> None:
        super().__init__(sentence, offset, line)
        self.elements: List[Any] = []
        self.report: Any = None


class UnknownItem(Error, ValueError):
    """An item whose kind the stream does not tell, or an unknown item name."""


class DocumentError(Error, ValueError):
    """A document the item's creator cannot be driven with."""


class UnknownFormat(Error, ValueError):
    """A text format this build does not have."""


class TextError(Error, ValueError):
    """A text that cannot be read, or streams that cannot be written as text.

    ``result`` holds what was done before the fault (an import's items).
    """

    def __init__(self, sentence: str, offset: Optional[int] = None,
                 line: Optional[int] = None, result: Any = None) -> None:
        super().__init__(sentence, offset, line)
        self.result = result


class Unsupported(Error, NotImplementedError):
    """An operation this build does not have (a merge onto a text, say)."""


class RefusedCall(UserWarning):
    """A call of a document that the item's creator refused: the stream
    written lacks it."""

