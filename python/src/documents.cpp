#include "documents.h"

#include <pybind11/pybind11.h>

#include <limits>
#include <utility>
#include <vector>

#include "facade.h"

namespace pimtlv_python {

namespace {

// A new reference, released at the end of its scope unless handed on.
class Ref {
  public:
    explicit Ref(PyObject* o) : m_o(o) {
        if (o == nullptr) throw pybind11::error_already_set();
    }
    ~Ref() { Py_XDECREF(m_o); }
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
    PyObject* get() const { return m_o; }
    PyObject* release() { return std::exchange(m_o, nullptr); }

  private:
    PyObject* m_o;
};

PyObject* Interned(const char* name) {
    PyObject* s = PyUnicode_InternFromString(name);
    if (s == nullptr) throw pybind11::error_already_set();
    return s;
}

void Set(PyObject* dict, PyObject* key, PyObject* value) {
    Ref held(value);
    if (PyDict_SetItem(dict, key, value) != 0) throw pybind11::error_already_set();
}

PyObject* NewRef(PyObject* o) {
    Py_INCREF(o);
    return o;
}

PyObject* Text(const std::string& text) {
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()),
                                "surrogateescape");
}

PyObject* ValueOf(const PimDoc::Value& value, Names& names);

// Whether the cyclic collector has nothing to find in o.
bool Untracked(PyObject* o) {
    return !PyObject_IS_GC(o) || !PyObject_GC_IsTracked(o);
}

// Takes a container of argument values (a list, a record, a call's
// arguments, a call) off the cyclic collector when everything in it is off
// it too, as CPython does for tuples and for dicts of texts and numbers. A
// document holds hundreds of thousands of them, and a collection that walks
// them all after a decode costs a third of it. Only a cycle a caller makes
// through one of them (a call put into its own arguments) is then not
// found; a dict that is given a container is tracked again by CPython.
PyObject* Settled(PyObject* container) {
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    if (PyList_CheckExact(container)) {
        for (Py_ssize_t i = 0; i < PyList_GET_SIZE(container); ++i) {
            if (!Untracked(PyList_GET_ITEM(container, i))) return container;
        }
    } else {
        for (Py_ssize_t pos = 0; PyDict_Next(container, &pos, &key, &value);) {
            if (!Untracked(value)) return container;
        }
    }
    if (PyObject_GC_IsTracked(container)) PyObject_GC_UnTrack(container);
    return container;
}

// A list of count values made by make(i), filled in place.
template <typename Make>
PyObject* ListOfCount(std::size_t count, Make&& make) {
    Ref list(PyList_New(static_cast<Py_ssize_t>(count)));
    for (std::size_t i = 0; i < count; ++i) {
        PyObject* entry = make(i);
        if (entry == nullptr) throw pybind11::error_already_set();
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(i), entry);
    }
    return list.release();
}

PyObject* ValueOf(const PimDoc::Value& value, Names& names) {
    struct Visit {
        Names& names;
        PyObject* operator()(std::nullptr_t) const { Py_RETURN_NONE; }
        PyObject* operator()(bool b) const { return PyBool_FromLong(b); }
        PyObject* operator()(std::int64_t n) const { return PyLong_FromLongLong(n); }
        PyObject* operator()(double d) const { return PyFloat_FromDouble(d); }
        PyObject* operator()(const std::string& s) const { return Text(s); }
        PyObject* operator()(const PimDoc::Bytes& b) const {
            const std::string hex = PimDoc::HexOf(b);
            return PyUnicode_FromStringAndSize(hex.data(), static_cast<Py_ssize_t>(hex.size()));
        }
        PyObject* operator()(const PimDoc::List& list) const {
            return Settled(
                ListOfCount(list.size(), [&](std::size_t i) { return ValueOf(list[i], names); }));
        }
        PyObject* operator()(const PimDoc::Record& record) const {
            Ref dict(PyDict_New());
            for (const PimDoc::Field& f : record) {
                Set(dict.get(), names.Of(f.name), ValueOf(f.value, names));
            }
            return Settled(dict.release());
        }
    };
    return std::visit(Visit{names}, value.data);
}

}  // namespace

PyObject* DictOf(const PimDoc::Document& document, Names& n) {
    Ref dict(PyDict_New());
    Set(dict.get(), n.item, NewRef(n.Of(document.item)));
    Set(dict.get(), n.calls, ListOfCount(document.calls.size(), [&](std::size_t i) {
            const PimDoc::Call& call = document.calls[i];
            Ref c(PyDict_New());
            Set(c.get(), n.op, NewRef(n.Of(call.op)));
            if (!call.args.empty()) {
                Ref args(PyDict_New());
                for (const PimDoc::Argument& a : call.args) {
                    Set(args.get(), n.Of(a.name), ValueOf(a.value, n));
                }
                Set(c.get(), n.args, Settled(args.release()));
            }
            return Settled(c.release());
        }));
    Set(dict.get(), n.diagnostics, ListOfCount(document.diagnostics.size(), [&](std::size_t i) {
            const PimDoc::Diagnostic& d = document.diagnostics[i];
            Ref entry(PyDict_New());
            Set(entry.get(), n.code, PyLong_FromLong(d.code));
            Set(entry.get(), n.text, Text(d.text));
            Set(entry.get(), n.call, PyLong_FromSize_t(d.call));
            return entry.release();
        }));
    Ref result(PyDict_New());
    Set(result.get(), n.ok, PyBool_FromLong(document.result.ok));
    Set(result.get(), n.consumed, PyLong_FromUnsignedLong(document.result.consumed));
    Set(dict.get(), n.result, result.release());
    return dict.release();
}

namespace {

// Python values to document values, saying which call and argument does not
// fit; the messages read as the JSON form's do.
class Reader {
  public:
    PimDoc::Document Document(PyObject* doc) {
        if (!PyDict_Check(doc)) Fail("a document must be a dict, not " + TypeName(doc));
        PyObject* key = nullptr;
        PyObject* value = nullptr;
        for (Py_ssize_t pos = 0; PyDict_Next(doc, &pos, &key, &value);) {
            const std::string k = KeyText(key, "a document's keys");
            if (k != "item" && k != "calls" && k != "diagnostics" && k != "result") {
                Fail("unknown document key '" + k + "'");
            }
        }
        PyObject* item = PyDict_GetItemString(doc, "item");
        if (item == nullptr || !PyUnicode_Check(item)) {
            Fail("a document needs \"item\", the item kind");
        }
        PimDoc::Document document;
        document.item = Utf8(item);
        const PimDoc::ItemInfo* info = PimDoc::FindItem(document.item);
        if (info == nullptr) Fail("unknown item '" + document.item + "'");
        PyObject* calls = PyDict_GetItemString(doc, "calls");
        if (calls == nullptr || !(PyList_Check(calls) || PyTuple_Check(calls))) {
            Fail("a document needs \"calls\", a list");
        }
        const Py_ssize_t count = PySequence_Fast_GET_SIZE(calls);
        document.calls.reserve(static_cast<std::size_t>(count));
        for (Py_ssize_t i = 0; i < count; ++i) {
            m_call = static_cast<std::size_t>(i);
            document.calls.push_back(Call(PySequence_Fast_GET_ITEM(calls, i), *info));
        }
        return document;
    }

  private:
    // Deeper than any argument's value (a list of records of lists): a
    // value that nests further, or holds itself, is refused rather than
    // followed down.
    static constexpr int kDepth = 16;

    [[noreturn]] static void Fail(const std::string& sentence) {
        throw Failure(Failure::Kind::Document, sentence);
    }
    [[noreturn]] void FailArg(const std::string& what) const {
        Fail("call " + std::to_string(m_call) + " (" + m_op + "): argument '" + m_arg + "' " +
             what);
    }

    static std::string TypeName(PyObject* o) { return Py_TYPE(o)->tp_name; }

    // A str's text; lone surrogates other than escaped bytes do not fit.
    static bool TryUtf8(PyObject* s, std::string& out) {
        Py_ssize_t size = 0;
        if (const char* text = PyUnicode_AsUTF8AndSize(s, &size)) {
            out.assign(text, static_cast<std::size_t>(size));
            return true;
        }
        PyErr_Clear();
        PyObject* bytes = PyUnicode_AsEncodedString(s, "utf-8", "surrogateescape");
        if (bytes == nullptr) {
            PyErr_Clear();
            return false;
        }
        out.assign(PyBytes_AS_STRING(bytes), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes)));
        Py_DECREF(bytes);
        return true;
    }
    static std::string Utf8(PyObject* s) {
        std::string out;
        if (!TryUtf8(s, out)) Fail("a text holds a lone surrogate, which is no UTF-8");
        return out;
    }
    static std::string KeyText(PyObject* key, const char* whose) {
        if (!PyUnicode_Check(key)) {
            Fail(std::string(whose) + " must be str, not " + TypeName(key));
        }
        return Utf8(key);
    }

    PimDoc::Call Call(PyObject* c, const PimDoc::ItemInfo& item) {
        const std::string where = "call " + std::to_string(m_call);
        if (!PyDict_Check(c)) Fail(where + " must be a dict, not " + TypeName(c));
        PyObject* key = nullptr;
        PyObject* value = nullptr;
        for (Py_ssize_t pos = 0; PyDict_Next(c, &pos, &key, &value);) {
            const std::string k = KeyText(key, (where + "'s keys").c_str());
            if (k != "op" && k != "args") Fail(where + ": unknown key '" + k + "'");
        }
        PyObject* op = PyDict_GetItemString(c, "op");
        if (op == nullptr || !PyUnicode_Check(op)) Fail(where + ": \"op\" must name an operation");
        PimDoc::Call call;
        call.op = Utf8(op);
        const PimShared::Description::OperationInfo* info = nullptr;
        for (std::size_t i = 0; i < item.operationCount; ++i) {
            if (call.op == item.operations[i].name) info = &item.operations[i];
        }
        if (info == nullptr) Fail(where + ": unknown operation '" + call.op + "'");
        m_op = info->name;
        PyObject* args = PyDict_GetItemString(c, "args");
        if (args == nullptr || args == Py_None) return call;
        if (!PyDict_Check(args)) {
            Fail(where + " (" + call.op + "): \"args\" must be a dict, not " + TypeName(args));
        }
        for (Py_ssize_t pos = 0; PyDict_Next(args, &pos, &key, &value);) {
            m_arg = KeyText(key, (where + " (" + call.op + "): argument names").c_str());
            bool known = false;
            bool data = false;
            for (std::size_t i = 0; i < info->arity; ++i) {
                if (info->args[i] == nullptr || m_arg != info->args[i]) continue;
                known = true;
                data = i + 1 < info->arity && info->args[i + 1] == nullptr;
            }
            if (!known) Fail(where + " (" + call.op + "): unknown argument '" + m_arg + "'");
            call.args.push_back(PimDoc::Argument{m_arg, data ? Data(value) : Value(value, 0)});
        }
        return call;
    }

    // A data argument: its hex text as the documents carry it, or bytes.
    PimDoc::Value Data(PyObject* v) const {
        if (v == Py_None) return PimDoc::Value();
        PimDoc::Bytes bytes;
        if (PyBytes_Check(v) || PyByteArray_Check(v)) {
            Py_buffer view;
            if (PyObject_GetBuffer(v, &view, PyBUF_SIMPLE) != 0)
                throw pybind11::error_already_set();
            const auto* begin = static_cast<const std::uint8_t*>(view.buf);
            bytes.assign(begin, begin + view.len);
            PyBuffer_Release(&view);
            return PimDoc::Value(std::move(bytes));
        }
        std::string hex;
        if (!PyUnicode_Check(v) || !TryUtf8(v, hex) || !PimDoc::BytesOfHex(hex, bytes)) {
            FailArg("must be a hex string, bytes or None");
        }
        return PimDoc::Value(std::move(bytes));
    }

    PimDoc::Value Value(PyObject* v, int depth) const {
        if (depth > kDepth) FailArg("nests deeper than any argument's value");
        if (v == Py_None) return PimDoc::Value();
        if (PyBool_Check(v)) return PimDoc::Value(v == Py_True);
        if (PyLong_Check(v)) {
            int overflow = 0;
            const long long n = PyLong_AsLongLongAndOverflow(v, &overflow);
            if (n == -1 && PyErr_Occurred()) throw pybind11::error_already_set();
            // Beyond every argument's range, which the creator's side says.
            if (overflow != 0) {
                return PimDoc::Value(overflow > 0 ? std::numeric_limits<double>::max()
                                                  : std::numeric_limits<double>::lowest());
            }
            return PimDoc::Value(static_cast<std::int64_t>(n));
        }
        if (PyFloat_Check(v)) return PimDoc::Value(PyFloat_AS_DOUBLE(v));
        if (PyUnicode_Check(v)) {
            std::string text;
            if (!TryUtf8(v, text)) FailArg("holds a lone surrogate, which is no UTF-8");
            return PimDoc::Value(std::move(text));
        }
        if (PyList_Check(v) || PyTuple_Check(v)) {
            const Py_ssize_t count = PySequence_Fast_GET_SIZE(v);
            PimDoc::List list;
            list.reserve(static_cast<std::size_t>(count));
            for (Py_ssize_t i = 0; i < count; ++i) {
                list.push_back(Value(PySequence_Fast_GET_ITEM(v, i), depth + 1));
            }
            return PimDoc::Value(std::move(list));
        }
        if (PyDict_Check(v)) {
            PimDoc::Record record;
            PyObject* key = nullptr;
            PyObject* field = nullptr;
            for (Py_ssize_t pos = 0; PyDict_Next(v, &pos, &key, &field);) {
                if (!PyUnicode_Check(key)) FailArg("has a field named by a " + TypeName(key));
                std::string name;
                if (!TryUtf8(key, name)) FailArg("has a field name that is no UTF-8");
                record.push_back(PimDoc::Field{std::move(name), Value(field, depth + 1)});
            }
            return PimDoc::Value(std::move(record));
        }
        FailArg("is a " + TypeName(v) + ", which no argument takes");
    }

    std::size_t m_call = 0;
    std::string m_op;
    std::string m_arg;
};

}  // namespace

// The names are short and few (a few hundred), and a decode looks one up
// for every call and argument: an open table of a power of two slots, kept
// at most half full, with a hash of the length and three letters, finds
// them at the first or second slot.
struct Names::Cache {
    struct Slot {
        std::string name;
        PyObject* string = nullptr;
    };
    std::vector<Slot> slots = std::vector<Slot>(1024);
    std::size_t used = 0;

    static std::size_t Hash(const std::string& s) noexcept {
        const std::size_t n = s.size();
        if (n == 0) return 0;
        const auto at = [&s](std::size_t i) {
            return std::size_t{static_cast<unsigned char>(s[i])};
        };
        return (n * 0x9E3779B1u) ^ (at(0) * 31) ^ (at(n / 2) << 7) ^ (at(n - 1) << 13);
    }
    // The slot of name, or the empty slot where it goes.
    Slot& Find(const std::string& name) {
        const std::size_t mask = slots.size() - 1;
        std::size_t i = Hash(name) & mask;
        while (slots[i].string != nullptr && slots[i].name != name) i = (i + 1) & mask;
        return slots[i];
    }
    void Grow() {
        std::vector<Slot> old(slots.size() * 2);
        old.swap(slots);
        for (Slot& slot : old) {
            if (slot.string != nullptr) Find(slot.name) = std::move(slot);
        }
    }
};

Names::Names()
    : item(Interned("item")),
      calls(Interned("calls")),
      op(Interned("op")),
      args(Interned("args")),
      diagnostics(Interned("diagnostics")),
      code(Interned("code")),
      text(Interned("text")),
      call(Interned("call")),
      result(Interned("result")),
      ok(Interned("ok")),
      consumed(Interned("consumed")),
      m_cache(new Cache) {
    // Every name the item descriptions give, ahead; record fields as met.
    for (const PimDoc::ItemInfo& i : PimDoc::Items()) {
        Of(i.kind);
        for (std::size_t o = 0; o < i.operationCount; ++o) {
            const PimShared::Description::OperationInfo& info = i.operations[o];
            Of(info.name);
            for (std::size_t a = 0; a < info.arity; ++a) {
                if (info.args[a] != nullptr) Of(info.args[a]);
            }
        }
    }
}

PyObject* Names::Of(const std::string& name) {
    Cache::Slot& slot = m_cache->Find(name);
    if (slot.string != nullptr) return slot.string;
    PyObject* s = Interned(name.c_str());
    slot = {name, s};
    if (++m_cache->used * 2 > m_cache->slots.size()) m_cache->Grow();
    return s;
}

PimDoc::Document DocumentOf(PyObject* document) {
    return Reader().Document(document);
}

}  // namespace pimtlv_python
