"""pimtlv: PIM items as nested type-length-value streams, from Python.

Streams in, documents out, and back::

    docs = pimtlv.decode(stream)          # one dict per item, as `pimtlv decode` prints
    stream = pimtlv.encode(docs)          # the same bytes again
    imported = pimtlv.from_text(ics, "ics")
    print(pimtlv.to_text(imported.streams, "ics").text)

Bad input raises a subclass of :class:`pimtlv.Error` with the offset (or
line) and a sentence; nothing of the input makes it crash.
"""

from __future__ import annotations

import gc
import warnings
from contextlib import contextmanager
from typing import Iterator, List, NamedTuple, Optional, Sequence, Union

from ._errors import (DocumentError, Error, MalformedStream, RefusedCall, TextError,
                      UnknownFormat, UnknownItem, Unsupported)
from . import _core
from ._core import (Diagnostic, ExportResult, ImportResult, Loss, MergeResult,
                    MergedItem)

__all__ = [
    "decode", "encode", "walk", "check", "from_text", "to_text", "formats",
    "Element", "Finding", "CheckReport",
    "Error", "MalformedStream", "UnknownItem", "DocumentError", "UnknownFormat",
    "TextError", "Unsupported", "RefusedCall",
    "ImportResult", "ExportResult", "MergeResult", "MergedItem", "Loss", "Diagnostic",
]

Bytes = Union[bytes, bytearray, memoryview]


def _bytes(data: Bytes) -> bytes:
    if isinstance(data, bytes):
        return data
    if isinstance(data, (bytearray, memoryview)):
        return bytes(data)
    raise TypeError(f"expected bytes, not {type(data).__name__}")


def _text_bytes(text: Union[str, Bytes]) -> bytes:
    return text.encode("utf-8", "surrogateescape") if isinstance(text, str) else _bytes(text)


@contextmanager
def _collector_paused():
    """Pauses the cyclic garbage collector while documents are built.

    A decode makes millions of small dicts and lists at once, none of them in
    a cycle; left running, the collector walks them again and again and
    takes three quarters of the time.
    """
    was = gc.isenabled()
    gc.disable()
    try:
        yield
    finally:
        if was:
            gc.enable()


def decode(data: Bytes, item: Optional[str] = None, trace: bool = False) -> List[dict]:
    """The documents of every item of ``data``, in stream order.

    Each is the document ``pimtlv decode`` prints: ``item`` (its kind),
    ``calls`` (``op`` and ``args`` of every receiver call), ``diagnostics``
    (``code``, ``text``, ``call``) and ``result`` (``ok``, ``consumed``). A
    file of one item gives a list of one. ``item`` forces the kind of every
    item ("event", "contact", ...); ``trace`` keeps the calendar parsers'
    code-0 trace lines.

    Raises :class:`MalformedStream` where the stream breaks (its
    ``documents`` hold every item up to and including the broken one, as far
    as it was read) and :class:`UnknownItem` for an item whose kind the
    stream does not tell (its ``documents`` hold the items before it); the
    error's ``offset`` is the byte the library's account of the fault points
    at. The GIL is released while the stream is parsed.
    """
    docs, fault = _core.decode(_bytes(data), item or "", trace)
    if fault is not None:
        kind, offset, sentence = fault
        error = (UnknownItem if kind == "unknown-item" else MalformedStream)(sentence, offset)
        error._documents = docs
        raise error
    return docs


def encode(docs: Union[dict, Sequence[dict]]) -> bytes:
    """The stream of one document or of a list of them, items one after another.

    A document is what :func:`decode` gives (only ``item`` and ``calls`` are
    read), so ``encode(decode(b)) == b`` wherever the tool's
    ``decode | encode`` gives back the same bytes. Data arguments take their
    hex text or ``bytes``. A call the item's creator refuses is left out of
    the stream with a :class:`RefusedCall` warning that names it; a document
    that cannot be used (wrong types, missing or unknown keys, numbers out of
    range) raises :class:`DocumentError` naming the item, call and argument.
    The GIL is released while the creators write.
    """
    stream, refused = _core.encode(docs)
    for call in refused:
        warnings.warn(RefusedCall(call), stacklevel=2)
    return stream


class Element(NamedTuple):
    """One element of a stream as the walk meets it."""

    offset: int            #: where its header starts
    depth: int             #: 0 for an item's root node
    element_class: int     #: 0 to 15 (8 is a node)
    type_id: int
    name: Optional[str]    #: its type ID's constant in its item, where known
    length: int            #: the declared value length
    value: Union[int, str, bytes, None]  #: number, text (bytes if not UTF-8), bytes; None for a node

    @property
    def class_name(self) -> str:
        """"Node", "String", "UInt32", ... as the tool's dump shows it."""
        return _core.class_name(self.element_class)


def walk(data: Bytes, item: Optional[str] = None) -> Iterator[Element]:
    """Every element of every item of ``data``, in stream order.

    Elements are named in their item's context (``item`` forces the kind).
    A malformed stream yields every element before the fault, then raises
    :class:`MalformedStream` (its ``elements`` hold them too).
    """
    with _collector_paused():
        elements, fault = _core.walk(_bytes(data), item or "")
    for e in elements:
        yield Element(*e)
    if fault is not None:
        error = MalformedStream(fault[1], fault[0])
        error.elements = [Element(*e) for e in elements]
        raise error


class Finding(NamedTuple):
    """One diagnostic of an item's parser."""

    item: int          #: the item's index in the stream, from 0
    offset: int        #: where the item starts
    code: int
    text: str
    call: int          #: index of the receiver call that followed it
    op: Optional[str]  #: that call's operation, None after the last call


class CheckReport(NamedTuple):
    """What :func:`check` found."""

    findings: List[Finding]
    items: int
    calls: int

    @property
    def ok(self) -> bool:
        return not self.findings


def _report(data: bytes, docs: List[dict]) -> CheckReport:
    offsets = _core.item_offsets(data)
    findings = []
    calls = 0
    for index, doc in enumerate(docs):
        calls += len(doc["calls"])
        for d in doc["diagnostics"]:
            call = d["call"]
            op = doc["calls"][call]["op"] if call < len(doc["calls"]) else None
            findings.append(Finding(index, offsets[index], d["code"], d["text"], call, op))
    return CheckReport(findings, len(docs), calls)


def check(data: Bytes, item: Optional[str] = None) -> CheckReport:
    """The diagnostics of every item's parser (not the code-0 trace lines).

    A malformed stream raises :class:`MalformedStream` whose ``report``
    holds the findings up to the fault.
    """
    data = _bytes(data)
    try:
        docs = decode(data, item)
    except MalformedStream as e:
        e.report = _report(data, e.documents)
        raise
    return _report(data, docs)


def formats() -> List[str]:
    """The text formats this build reads and writes ("ics", "vcf", "eml", "mbox")."""
    return _core.formats()


def from_text(text: Union[str, Bytes], fmt: str, strict: bool = False) -> ImportResult:
    """The item streams of an iCalendar, vCard, e-mail or mbox text.

    The result has ``streams`` (every item's stream, one after another) and
    ``items`` (each with ``kind``, ``line``, ``offset``, ``size`` and
    ``losses``: ``name``, ``count``, ``line``, ``kind``), and ``losses``
    for what belongs to no item. A text that cannot be read raises
    :class:`TextError` (its ``result`` keeps the items before the fault);
    with ``strict``, so does any loss.
    """
    result = _core.from_text(_text_bytes(text), fmt)
    if not result.ok:
        raise TextError(result.error, line=result.error_line or None, result=result)
    if strict and result.has_loss:
        lost = [l for i in result.items for l in i.losses if l.changes]
        lost += [l for l in result.losses if l.changes]
        names = ", ".join(f"{l.name} (line {l.line})" if l.line else l.name for l in lost)
        raise TextError(f"not carried as it is: {names}", line=lost[0].line or None,
                        result=result)
    return result


def to_text(streams: Bytes, fmt: str, onto: Union[str, Bytes, None] = None,
            base: Union[str, Bytes, None] = None,
            prefer_device: bool = False) -> Union[ExportResult, MergeResult]:
    """The text of item streams; or, with ``onto``, the streams merged onto
    that original text.

    A merge takes from each item what the item carries and keeps from the
    original what it cannot; with ``base`` (the text sent to the device) it
    is three-way, and ``prefer_device`` lets the device win conflicts. The
    result has ``text`` (and ``data``, its bytes) and ``items``, the report
    per item (``diagnostics``, ``losses``; a merge's also ``outcome``,
    ``changes`` and ``conflicts``). Raises :class:`TextError` for streams
    the format cannot take, :class:`Unsupported` where this build has no
    merge for the format.
    """
    data = _bytes(streams)
    if onto is None:
        if base is not None:
            raise Error("base= is the text sent to the device, for a merge onto=")
        result = _core.to_text(data, fmt)
        if not result.ok:
            raise TextError(result.error, result=result)
        return result
    merged = _core.merge(data, fmt, _text_bytes(onto),
                         None if base is None else _text_bytes(base), prefer_device)
    if not merged.ok:
        raise TextError(merged.error, line=merged.error_line or None, result=merged)
    return merged
