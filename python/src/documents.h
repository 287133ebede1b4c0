#ifndef PIMTLV_PYTHON_DOCUMENTS_H
#define PIMTLV_PYTHON_DOCUMENTS_H

// Item documents as Python values and back, built straight from (and into)
// the document library's documents: dicts and lists of str, int, bool and
// None, as the tool's decode prints them in JSON. Every call holds the GIL.

#include <Python.h>

#include <cstddef>
#include <string>
#include <vector>

#include "doc/Document.h"

namespace pimtlv_python {

// The names of the documents (their keys, operations, arguments and record
// fields) as interned Python strings, made once and shared by every
// document; a dict keyed by them looks its keys up by identity.
class Names {
  public:
    Names();
    Names(const Names&) = delete;
    Names& operator=(const Names&) = delete;

    // A borrowed reference to the string of name.
    PyObject* Of(const std::string& name);

    PyObject* const item;
    PyObject* const calls;
    PyObject* const op;
    PyObject* const args;
    PyObject* const diagnostics;
    PyObject* const code;
    PyObject* const text;
    PyObject* const call;
    PyObject* const result;
    PyObject* const ok;
    PyObject* const consumed;

  private:
    struct Cache;
    Cache* m_cache;  // lives as long as the process, as the strings do
};

// Python's own failures (no memory) throw pybind11::error_already_set.

// A new dict of the document. Bytes of a text that are not UTF-8 (the
// parsers repair texts, so there should be none) become surrogate escapes,
// which DocumentOf turns back into the bytes.
PyObject* DictOf(const PimDoc::Document& document, Names& names);

// The document of a Python value shaped as DictOf makes them (only "item"
// and "calls" are read). Throws Failure (Document) naming what does not fit.
PimDoc::Document DocumentOf(PyObject* document);

}  // namespace pimtlv_python

#endif
