"""decode, encode, walk and check against the tool and against bad input."""

import json
import re
import subprocess
import warnings

import pytest
from hypothesis import HealthCheck, given, settings, strategies as st

import pimtlv
from conftest import SAMPLES

SAMPLE_BYTES = {p.stem: p.read_bytes() for p in SAMPLES}


@pytest.mark.parametrize("path", SAMPLES, ids=lambda p: p.stem)
def test_samples_decode_as_the_tool_prints_and_encode_back(tool, path):
    printed = json.loads(subprocess.run([str(tool), "decode", str(path)], check=True,
                                        capture_output=True).stdout)
    docs = pimtlv.decode(path.read_bytes())
    assert docs == [printed]
    assert pimtlv.encode(docs) == path.read_bytes()
    assert pimtlv.encode(docs[0]) == path.read_bytes()


def test_a_file_of_several_items_is_a_list_in_file_order():
    data = b"".join(SAMPLE_BYTES.values())
    docs = pimtlv.decode(data)
    assert [d["item"] for d in docs] == list(SAMPLE_BYTES)
    assert pimtlv.encode(docs) == data
    assert pimtlv.decode(b"") == []


def test_walk_names_elements_in_their_item_as_the_dump_does(tool):
    data = SAMPLE_BYTES["sms"]
    dump = subprocess.run([str(tool), "dump", "-"], input=data, check=True,
                          capture_output=True).stdout.decode().splitlines()
    elements = list(pimtlv.walk(data))
    assert len(elements) == len(dump)
    for e, line in zip(elements, dump):
        offset, cls, type_id, *rest = line.split()
        assert (e.offset, e.class_name.split()[0], e.type_id) == (int(offset), cls, int(type_id))
        if e.name:
            assert rest[0] == e.name
    texts = [e.value for e in elements if e.class_name == "String"]
    assert "Running 10 min late, sorry! 🚲" in texts


# Each damaged stream, the error it raises, where, and how many items
# were read before it.
TWO = SAMPLE_BYTES["sms"] + SAMPLE_BYTES["note"]
FOLDER = SAMPLE_BYTES["sms"].index(b"Inbox\0")  # the value of the String at FOLDER - 3
FAULTS = [
    ("text without its zero byte",
     SAMPLE_BYTES["sms"][:FOLDER + 5] + b"x" + SAMPLE_BYTES["sms"][FOLDER + 6:],
     pimtlv.MalformedStream, FOLDER - 3, 1),
    ("truncated", SAMPLE_BYTES["event"][:-3], pimtlv.MalformedStream, 0, 1),
    ("second item truncated", TWO[:-1], pimtlv.MalformedStream, len(SAMPLE_BYTES["sms"]), 2),
    ("rest after an item", SAMPLE_BYTES["sms"] + b"\x80", pimtlv.MalformedStream,
     len(SAMPLE_BYTES["sms"]), 1),
    ("unknown root", b"\x80\x07\x02\x01\x00", pimtlv.UnknownItem, 0, 0),
    ("unknown second item", SAMPLE_BYTES["sms"] + b"\x80\x07\x00", pimtlv.UnknownItem,
     len(SAMPLE_BYTES["sms"]), 1),
]


@pytest.mark.parametrize("data, error, offset, read", [f[1:] for f in FAULTS],
                         ids=[f[0] for f in FAULTS])
def test_errors_carry_the_offset_and_what_was_read_before(data, error, offset, read):
    with pytest.raises(error) as caught:
        pimtlv.decode(data)
    assert caught.value.offset == offset
    assert str(caught.value) == caught.value.sentence != ""
    assert len(caught.value.documents) == read
    if error is pimtlv.UnknownItem:
        assert "name it with item=" in caught.value.sentence
    if error is pimtlv.MalformedStream:
        with pytest.raises(pimtlv.MalformedStream) as walked:
            list(pimtlv.walk(data))
        assert walked.value.offset >= offset
        with pytest.raises(pimtlv.MalformedStream) as checked:
            pimtlv.check(data)
        assert checked.value.report.items == read


def test_check_lists_the_parsers_diagnostics_with_their_call():
    data = bytes.fromhex("80020F900A040000000182BC0563E7027800")
    report = pimtlv.check(data)
    assert not report.ok and report.items == 1
    (finding,) = report.findings
    assert (finding.code, finding.op, finding.offset) == (2, "End", 0)
    assert "999" in finding.text
    assert pimtlv.check(SAMPLE_BYTES["contact"]).ok


@pytest.mark.parametrize("doc, message", [
    ({"item": "nothing", "calls": []}, "unknown item"),
    ({"item": "sms", "calls": [{"op": "Nope"}]}, "Nope"),
    ({"item": "sms", "calls": [{"op": "Begin", "args": {"instance": "x"}}]}, "instance"),
    ({"item": "sms", "calls": [{"op": "Body", "args": {"text": b"raw"}}]}, "'text' is a bytes"),
    ({"item": "sms", "calls": [{"op": "Begin", "args": {"instance": 2**64}}]}, "instance"),
    ({"item": "sms", "calls": [{"op": "Begin", "args": {1: 2}}]}, "argument names must be str"),
    ({"item": "sms", "calls": ({"op": "Begin"}, "End")}, "call 1 must be a dict, not str"),
    ({"item": "sms"}, "needs \"calls\""),
    ({"calls": []}, "needs \"item\""),
    ({"item": "sms", "calls": [], "extra": 1}, "unknown document key 'extra'"),
    ({"item": "sms", "calls": [{"op": "Body", "args": {"text": "\ud800"}}]}, "lone surrogate"),
    ("sms", "not str"),
])
def test_documents_the_creator_cannot_take_raise_document_error(doc, message):
    with pytest.raises(pimtlv.DocumentError, match=f"item 2: .*{re.escape(message)}"):
        pimtlv.encode([pimtlv.decode(SAMPLE_BYTES["sms"])[0], doc])


def test_nesting_without_end_is_refused_not_followed():
    doc = pimtlv.decode(SAMPLE_BYTES["contact"])[0]
    looped = []
    looped.append(looped)
    doc["calls"][0]["args"]["instance"] = looped
    with pytest.raises(pimtlv.DocumentError, match="nests deeper"):
        pimtlv.encode(doc)
    with pytest.raises(pimtlv.DocumentError, match="not int"):
        pimtlv.encode(5)


def test_a_refused_call_warns_by_name_and_is_left_out():
    doc = pimtlv.decode(SAMPLE_BYTES["sms"])[0]
    doc["calls"].insert(1, {"op": "OriginatorFName", "args": {"text": ""}})
    with pytest.warns(pimtlv.RefusedCall, match="OriginatorFName"):
        assert pimtlv.encode(doc) == SAMPLE_BYTES["sms"]


NOT_TEXT = re.compile(r"^(\d{8}(T\d{6}Z?)?|[0-9a-f]*)$")
TEXTS = st.text(st.characters(blacklist_characters="\0", blacklist_categories=("Cs",)),
                min_size=1, max_size=40)


@settings(max_examples=60, deadline=None, suppress_health_check=[HealthCheck.too_slow])
@given(kind=st.sampled_from(["event", "contact", "email", "im", "note", "task"]),
       data=st.data())
def test_documents_with_any_texts_go_to_bytes_and_back(kind, data):
    doc = pimtlv.decode(SAMPLE_BYTES[kind])[0]
    for call in doc["calls"]:
        for name, value in call.get("args", {}).items():
            if isinstance(value, str) and not NOT_TEXT.match(value):
                call["args"][name] = data.draw(TEXTS)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        stream = pimtlv.encode(doc)
    again = pimtlv.decode(stream)[0]
    assert again["calls"] == doc["calls"]
    assert pimtlv.encode(again) == stream


@st.composite
def damaged(draw):
    """A sample with a few bytes changed, maybe cut short."""
    data = bytearray(SAMPLE_BYTES[draw(st.sampled_from(sorted(SAMPLE_BYTES)))])
    for _ in range(draw(st.integers(1, 4))):
        data[draw(st.integers(0, len(data) - 1))] = draw(st.integers(0, 255))
    return bytes(data[:draw(st.integers(0, len(data)))])


def survives(call):
    try:
        result = call()
        if hasattr(result, "__next__"):
            list(result)
    except pimtlv.Error as e:
        assert e.sentence


@settings(max_examples=300, deadline=None)
@given(st.one_of(st.binary(max_size=300), damaged()))
def test_any_bytes_give_a_result_or_a_pimtlv_error(data):
    survives(lambda: pimtlv.decode(data))
    survives(lambda: pimtlv.walk(data))
    survives(lambda: pimtlv.check(data))
    for fmt in pimtlv.formats():
        survives(lambda: pimtlv.to_text(data, fmt))


# Whatever a caller may put where a document's values go: JSON's values and
# Python's others, huge numbers, keys that are not str, nesting.
ANY_VALUES = st.recursive(
    st.none() | st.booleans() | st.integers(-2**70, 2**70) | st.floats() | st.text(max_size=20)
    | st.binary(max_size=8) | st.builds(object) | st.frozensets(st.integers(), max_size=2),
    lambda inner: st.lists(inner, max_size=3) | st.tuples(inner, inner)
    | st.dictionaries(st.text(max_size=8) | st.integers(), inner, max_size=3),
    max_leaves=8)


def survives_encode(doc):
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", pimtlv.RefusedCall)
        try:
            pimtlv.decode(pimtlv.encode(doc))
        except pimtlv.Error as e:
            assert e.sentence


@settings(max_examples=150, deadline=None)
@given(kind=st.sampled_from(sorted(SAMPLE_BYTES)), data=st.data())
def test_any_argument_values_give_a_stream_or_a_document_error(kind, data):
    doc = pimtlv.decode(SAMPLE_BYTES[kind])[0]
    for call in data.draw(st.lists(st.sampled_from(doc["calls"]), max_size=3)):
        if call.get("args"):
            call["args"][data.draw(st.sampled_from(sorted(call["args"])))] = data.draw(ANY_VALUES)
    survives_encode(doc)


@settings(max_examples=150, deadline=None)
@given(kind=st.sampled_from(sorted(SAMPLE_BYTES)), data=st.data())
def test_documents_of_any_shape_give_a_stream_or_a_document_error(kind, data):
    doc = pimtlv.decode(SAMPLE_BYTES[kind])[0]
    where = data.draw(st.sampled_from(["doc", "key", "calls", "call", "op", "args"]))
    garbage = data.draw(ANY_VALUES)
    call = data.draw(st.sampled_from(doc["calls"]))
    if where == "doc":
        doc = garbage
    elif where == "key":
        doc[data.draw(st.sampled_from(["item", "calls", 7, "result"]))] = garbage
    elif where == "calls":
        doc["calls"].append(garbage)
    elif where in ("op", "args"):
        call[where] = garbage
    else:
        call[data.draw(st.text(max_size=4) | st.integers())] = garbage
    survives_encode(doc)
