"""Types of the C++ core; use them through the functions of the pimtlv package."""

from typing import Iterable, List, Optional, Tuple, Union

Fault = Optional[Tuple[int, str]]
RawElement = Tuple[int, int, int, int, Optional[str], int, object]

class Loss:
    """Something of the input that did not arrive as it was."""
    name: str
    """By its name in the text format: "RRULE", "VALARM", "TEL;PREF"."""
    count: int
    line: int
    """First occurrence, 1-based line of the input; 0 when none applies."""
    kind: str
    """"not-carried", "regenerated", "converted" or "limit"."""
    detail: str
    changes: bool
    """Whether the user's content changed (everything but "regenerated")."""

class Diagnostic:
    """What an item parser reported."""
    code: int
    text: str

class ImportedItem:
    kind: str
    """"event", "task", "note", "contact", "email"."""
    offset: int
    """Where its stream starts in ImportResult.streams."""
    size: int
    line: int
    """Where the item starts in the text, from 1."""
    losses: List[Loss]

class ImportResult:
    ok: bool
    error: str
    error_line: int
    streams: bytes
    """Every item's stream, one after another."""
    items: List[ImportedItem]
    losses: List[Loss]
    """What belongs to no item: a calendar's time zones, text outside any item."""
    has_loss: bool

class ExportedItem:
    kind: str
    offset: int
    malformed: bool
    diagnostics: List[Diagnostic]
    losses: List[Loss]

class ExportResult:
    ok: bool
    error: str
    text: str
    data: bytes
    """The text as bytes, exactly as written."""
    items: List[ExportedItem]

class PropertyChange:
    name: str
    kind: str
    """"added", "removed" or "changed"."""

class Conflict:
    name: str
    device_won: bool

class MergedItem:
    kind: str
    offset: int
    uid: str
    instance: int
    outcome: str
    """"unchanged", "changed", "added" or "failed"."""
    changes: List[PropertyChange]
    conflicts: List[Conflict]
    malformed: bool
    diagnostics: List[Diagnostic]
    losses: List[Loss]

class MergeResult:
    ok: bool
    error: str
    error_line: int
    text: str
    data: bytes
    items: List[MergedItem]
    unchanged: bool
    """Whether every item came back unchanged, so the write can be skipped."""

DecodeFault = Optional[Tuple[str, int, str]]
"""("malformed" or "unknown-item", offset, sentence) of a decode stopped early."""

def decode(data: bytes, item: str = ..., trace: bool = ...) -> Tuple[List[dict], DecodeFault]: ...
def encode(docs: Union[dict, Iterable[dict]]) -> Tuple[bytes, List[str]]: ...
"""The stream of the documents, and a sentence for each call a creator refused."""
def walk(data: bytes, item: str = ...) -> Tuple[List[RawElement], Fault]: ...
def class_name(element_class: int) -> str: ...
def item_offsets(data: bytes) -> List[int]: ...
def formats() -> List[str]: ...
def from_text(text: bytes, format: str) -> ImportResult: ...
def to_text(streams: bytes, format: str) -> ExportResult: ...
def merge(streams: bytes, format: str, onto: bytes, base: Optional[bytes] = ...,
          prefer_device: bool = ...) -> MergeResult: ...
