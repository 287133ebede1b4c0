// The extension module pimtlv._core: Python types over the facade. The
// package's own modules (pimtlv/__init__.py) shape these into the public
// surface; the exception classes live there too, and Failure becomes one of
// them here.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "documents.h"
#include "facade.h"
#include "parsercreatorcollection/src/tlv/parser/ITLV.h"

namespace py = pybind11;
using namespace pybind11::literals;

namespace {

using pimtlv_python::Failure;

std::pair<const std::uint8_t*, std::size_t> Buffer(const py::bytes& data) {
    char* bytes = nullptr;
    Py_ssize_t size = 0;
    if (PyBytes_AsStringAndSize(data.ptr(), &bytes, &size) != 0) throw py::error_already_set();
    return {reinterpret_cast<const std::uint8_t*>(bytes), static_cast<std::size_t>(size)};
}

py::bytes ToBytes(const std::uint8_t* data, std::size_t size) {
    return py::bytes(reinterpret_cast<const char*>(data), size);
}

py::object Offset(std::size_t offset) {
    if (offset == Failure::kNoOffset) return py::none();
    return py::int_(offset);
}

py::object Fault(const pimtlv_python::StreamFault& fault) {
    if (!fault.present) return py::none();
    return py::make_tuple(fault.offset, fault.sentence);
}

// The name Python sees for a bridge's enumerator: names lists them in the
// enumeration's order.
template <typename E, std::size_t N>
const char* NameOf(E value, const char* const (&names)[N]) {
    const auto index = static_cast<std::size_t>(value);
    return index < N ? names[index] : "unknown";
}

constexpr const char* kLossKinds[] = {"not-carried", "regenerated", "converted", "limit"};
constexpr const char* kOutcomes[] = {"unchanged", "changed", "added", "failed"};
constexpr const char* kChanges[] = {"added", "removed", "changed"};

const char* KindName(PimBridge::Loss::Kind kind) {
    return NameOf(kind, kLossKinds);
}
const char* OutcomeName(PimBridge::MergedItem::Outcome outcome) {
    return NameOf(outcome, kOutcomes);
}
const char* ChangeName(PimBridge::PropertyChange::Kind kind) {
    return NameOf(kind, kChanges);
}

// The text a bridge wrote, as str; bytes that are not UTF-8 survive as
// surrogate escapes, and .data has them as they are.
py::str Text(const std::string& text) {
    PyObject* s =
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
    if (s == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(s);
}

py::object Element(const pimtlv_python::WalkElement& e) {
    py::object value = py::none();
    if (e.numeric) {
        value = py::int_(e.number);
    } else if (e.elementClass == ParserCreatorCollection::String) {
        // The text before its terminator; bytes where it is not UTF-8.
        const std::size_t n = e.length > 0 ? e.length - 1 : 0;
        PyObject* s = PyUnicode_DecodeUTF8(reinterpret_cast<const char*>(e.value),
                                           static_cast<Py_ssize_t>(n), "strict");
        if (s != nullptr) {
            value = py::reinterpret_steal<py::str>(s);
        } else {
            PyErr_Clear();
            value = ToBytes(e.value, n);
        }
    } else if (e.elementClass != ParserCreatorCollection::Node) {
        value = ToBytes(e.value, e.length);
    }
    return py::make_tuple(e.offset, e.depth, e.elementClass, e.typeId,
                          e.name != nullptr ? py::object(py::str(e.name)) : py::object(py::none()),
                          e.length, value);
}

// What an export and a merge say of each item alike.
template <typename Item>
py::class_<Item> ItemReport(py::module_& m, const char* name, const char* doc) {
    py::class_<Item> c(m, name, doc);
    c.def_readonly("kind", &Item::kind)
        .def_readonly("offset", &Item::offset, "where its stream starts in the streams given")
        .def_readonly("malformed", &Item::malformed, "its parser stopped early")
        .def_readonly("diagnostics", &Item::diagnostics)
        .def_readonly("losses", &Item::losses, "what the text format has no place for");
    return c;
}

// What an export and a merge hand back alike: the text and the items.
template <typename Result>
py::class_<Result> TextResult(py::module_& m, const char* name, const char* doc) {
    py::class_<Result> c(m, name, doc);
    c.def_readonly("ok", &Result::ok)
        .def_readonly("error", &Result::error)
        .def_property_readonly("text", [](const Result& r) { return Text(r.text); })
        .def_property_readonly(
            "data", [](const Result& r) { return py::bytes(r.text); },
            "the text's bytes as written")
        .def_readonly("items", &Result::items);
    return c;
}

}  // namespace

PYBIND11_MODULE(_core, m) {
    m.doc() = "The C++ core of pimtlv; use the functions of the pimtlv package.";

    // Failure becomes the package's exception of its kind (pimtlv._errors).
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const Failure& f) {
            static const char* const kNames[] = {"DocumentError", "UnknownItem", "UnknownFormat",
                                                 "Unsupported"};
            py::object errors = py::module_::import("pimtlv._errors");
            py::object type = errors.attr(kNames[static_cast<int>(f.kind)]);
            py::object error = type(f.what(), Offset(f.offset));
            PyErr_SetObject(type.ptr(), error.ptr());
        }
    });

    // The names' strings live as long as the process, as interned strings do.
    static pimtlv_python::Names* const names = new pimtlv_python::Names();

    m.def(
        "decode",
        [](const py::bytes& data, const std::string& item, bool trace) {
            const auto [bytes, size] = Buffer(data);
            py::list documents;
            pimtlv_python::DecodeFault fault;
            // Millions of small dicts and lists, none in a cycle: the cyclic
            // collector would walk them again and again.
            const bool collecting = PyGC_Disable() != 0;
            try {
                // Each item is parsed without the GIL and built into Python
                // values with it, while its document is still in the cache.
                py::gil_scoped_release unlocked;
                fault = pimtlv_python::Decode(
                    bytes, size, item, trace, [&](PimDoc::Document&& document) {
                        py::gil_scoped_acquire locked;
                        const py::object dict = py::reinterpret_steal<py::object>(
                            pimtlv_python::DictOf(document, *names));
                        if (PyList_Append(documents.ptr(), dict.ptr()) != 0) {
                            throw py::error_already_set();
                        }
                    });
            } catch (...) {
                if (collecting) PyGC_Enable();
                throw;
            }
            if (collecting) PyGC_Enable();
            if (fault.kind == pimtlv_python::DecodeFault::Kind::None) {
                return py::make_tuple(documents, py::none());
            }
            const char* kind = fault.kind == pimtlv_python::DecodeFault::Kind::UnknownItem
                                   ? "unknown-item"
                                   : "malformed";
            return py::make_tuple(documents, py::make_tuple(kind, fault.offset, fault.sentence));
        },
        "data"_a, "item"_a = "", "trace"_a = false,
        "([documents], None or (\"malformed\" or \"unknown-item\", offset, sentence))");

    m.def(
        "encode",
        [](const py::object& docs) {
            // One document or a sequence of them; "item N: " says which of
            // several a failure is in.
            const bool one = PyDict_Check(docs.ptr()) != 0;
            py::list all;
            if (one) {
                all.append(docs);
            } else if (PyObject* list = PySequence_List(docs.ptr())) {
                all = py::reinterpret_steal<py::list>(list);
            } else {
                PyErr_Clear();
                throw Failure(Failure::Kind::Document,
                              "expected a document (a dict) or a sequence of them, not " +
                                  std::string(Py_TYPE(docs.ptr())->tp_name));
            }
            std::vector<PimDoc::Document> documents;
            documents.reserve(all.size());
            const auto where = [&](std::size_t i) {
                return one ? std::string() : "item " + std::to_string(i + 1) + ": ";
            };
            const auto within = [&](std::size_t i, const Failure& f) {
                return Failure(f.kind, where(i) + f.what(), f.offset);
            };
            for (std::size_t i = 0; i < all.size(); ++i) {
                try {
                    documents.push_back(pimtlv_python::DocumentOf(all[i].ptr()));
                } catch (const Failure& f) {
                    throw within(i, f);
                }
            }
            std::vector<std::uint8_t> stream;
            std::vector<std::string> refused;
            {
                py::gil_scoped_release unlocked;
                for (std::size_t i = 0; i < documents.size(); ++i) {
                    const std::size_t before = refused.size();
                    try {
                        pimtlv_python::Encode(documents[i], stream, refused);
                    } catch (const Failure& f) {
                        throw within(i, f);
                    }
                    for (std::size_t r = before; r < refused.size(); ++r) {
                        refused[r] = where(i) + "the creator refused " + refused[r];
                    }
                }
            }
            return py::make_tuple(ToBytes(stream.data(), stream.size()), refused);
        },
        "docs"_a, "(stream, refused calls) of one document (a dict) or a sequence of them");

    m.def(
        "walk",
        [](const py::bytes& data, const std::string& item) {
            const auto [bytes, size] = Buffer(data);
            std::vector<pimtlv_python::WalkElement> elements;
            pimtlv_python::StreamFault fault;
            {
                py::gil_scoped_release unlocked;
                fault = pimtlv_python::Walk(bytes, size, item, elements);
            }
            py::list out(elements.size());
            for (std::size_t i = 0; i < elements.size(); ++i) out[i] = Element(elements[i]);
            return py::make_tuple(out, Fault(fault));
        },
        "data"_a, "item"_a = "",
        "([(offset, depth, class, type_id, name, length, value)], fault or None)");

    m.def("class_name", &pimtlv_python::ClassName, "element_class"_a);
    m.def(
        "item_offsets",
        [](const py::bytes& data) {
            const auto [bytes, size] = Buffer(data);
            return pimtlv_python::ItemOffsets(bytes, size);
        },
        "data"_a);
    m.def("formats", &pimtlv_python::Formats);

    py::class_<PimBridge::Loss>(m, "Loss", "Something of the input that did not arrive as it was.")
        .def_readonly("name", &PimBridge::Loss::name, "by its name in the text format")
        .def_readonly("count", &PimBridge::Loss::count)
        .def_readonly("line", &PimBridge::Loss::line, "first occurrence, from 1; 0 when none")
        .def_property_readonly(
            "kind", [](const PimBridge::Loss& l) { return KindName(l.kind); },
            "not-carried, regenerated, converted or limit")
        .def_readonly("detail", &PimBridge::Loss::detail)
        .def_property_readonly("changes", &PimBridge::Loss::Changes,
                               "whether the user's content changed (all but regenerated)")
        .def("__repr__", [](const PimBridge::Loss& l) {
            return "Loss(" + l.name + ", count=" + std::to_string(l.count) +
                   ", line=" + std::to_string(l.line) + ", kind=" + KindName(l.kind) + ")";
        });

    py::class_<PimBridge::Diagnostic>(m, "Diagnostic", "What an item parser reported.")
        .def_readonly("code", &PimBridge::Diagnostic::code)
        .def_readonly("text", &PimBridge::Diagnostic::text)
        .def("__repr__", [](const PimBridge::Diagnostic& d) {
            return "Diagnostic(" + std::to_string(d.code) + ", " + d.text + ")";
        });

    py::class_<PimBridge::ImportedItem>(m, "ImportedItem", "One item a text was read into.")
        .def_readonly("kind", &PimBridge::ImportedItem::kind)
        .def_readonly("offset", &PimBridge::ImportedItem::offset)
        .def_readonly("size", &PimBridge::ImportedItem::size)
        .def_readonly("line", &PimBridge::ImportedItem::line)
        .def_readonly("losses", &PimBridge::ImportedItem::losses);

    py::class_<PimBridge::ImportResult>(m, "ImportResult", "The item streams of a text.")
        .def_readonly("ok", &PimBridge::ImportResult::ok)
        .def_readonly("error", &PimBridge::ImportResult::error)
        .def_readonly("error_line", &PimBridge::ImportResult::errorLine)
        .def_property_readonly("streams",
                               [](const PimBridge::ImportResult& r) {
                                   return ToBytes(r.streams.data(), r.streams.size());
                               })
        .def_readonly("items", &PimBridge::ImportResult::items)
        .def_readonly("losses", &PimBridge::ImportResult::losses, "what belongs to no item")
        .def_property_readonly("has_loss", &PimBridge::ImportResult::HasLoss);

    ItemReport<PimBridge::ExportedItem>(m, "ExportedItem", "One item a text was written from.");
    TextResult<PimBridge::ExportResult>(m, "ExportResult", "The text of item streams.");

    py::class_<PimBridge::PropertyChange>(m, "PropertyChange")
        .def_readonly("name", &PimBridge::PropertyChange::name)
        .def_property_readonly(
            "kind", [](const PimBridge::PropertyChange& c) { return ChangeName(c.kind); })
        .def("__repr__", [](const PimBridge::PropertyChange& c) {
            return "PropertyChange(" + c.name + ", " + ChangeName(c.kind) + ")";
        });

    py::class_<PimBridge::Conflict>(m, "Conflict")
        .def_readonly("name", &PimBridge::Conflict::name)
        .def_readonly("device_won", &PimBridge::Conflict::deviceWon);

    ItemReport<PimBridge::MergedItem>(m, "MergedItem", "One item merged onto the original.")
        .def_readonly("uid", &PimBridge::MergedItem::uid)
        .def_readonly("instance", &PimBridge::MergedItem::instance)
        .def_property_readonly(
            "outcome", [](const PimBridge::MergedItem& i) { return OutcomeName(i.outcome); },
            "unchanged, changed, added or failed")
        .def_readonly("changes", &PimBridge::MergedItem::changes)
        .def_readonly("conflicts", &PimBridge::MergedItem::conflicts);

    TextResult<PimBridge::MergeResult>(m, "MergeResult", "Item streams merged onto a text.")
        .def_readonly("error_line", &PimBridge::MergeResult::errorLine)
        .def_property_readonly("unchanged", &PimBridge::MergeResult::Unchanged);

    m.def(
        "from_text",
        [](const py::bytes& text, const std::string& format) {
            const auto [bytes, size] = Buffer(text);
            py::gil_scoped_release unlocked;
            return pimtlv_python::FromText(format, reinterpret_cast<const char*>(bytes), size);
        },
        "text"_a, "format"_a);
    m.def(
        "to_text",
        [](const py::bytes& streams, const std::string& format) {
            const auto [bytes, size] = Buffer(streams);
            py::gil_scoped_release unlocked;
            return pimtlv_python::ToText(format, bytes, size);
        },
        "streams"_a, "format"_a);
    m.def(
        "merge",
        [](const py::bytes& streams, const std::string& format, const std::string& onto,
           const py::object& base, bool preferDevice) {
            const auto [bytes, size] = Buffer(streams);
            std::string baseText;
            PimBridge::MergeOptions options;
            options.preferDevice = preferDevice;
            if (!base.is_none()) {
                baseText = base.cast<std::string>();
                options.base = baseText.data();
                options.baseSize = baseText.size();
            }
            py::gil_scoped_release unlocked;
            return pimtlv_python::MergeText(format, onto, bytes, size, options);
        },
        "streams"_a, "format"_a, "onto"_a, "base"_a = py::none(), "prefer_device"_a = false);
}
