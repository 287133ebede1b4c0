#include "Bridges.h"

#include <algorithm>
#include <cctype>
#include <ostream>

#include <unistd.h>

#include "Input.h"
#include "pimshared/common/ItemKind.h"

namespace PimTool {

const std::vector<const FormatAdapter*>& Formats() {
    static const std::vector<const FormatAdapter*> formats = {
#ifdef PIMTLV_TOOL_BRIDGE_ICAL
        &kIcsFormat,
#endif
#ifdef PIMTLV_TOOL_BRIDGE_VCARD
        &kVcfFormat,
#endif
#ifdef PIMTLV_TOOL_BRIDGE_MIME
        &kEmlFormat,
        &kMboxFormat,
#endif
    };
    return formats;
}

const FormatAdapter* FindFormat(const std::string& name) {
    for (const FormatAdapter* f : Formats()) {
        if (name == f->name) return f;
    }
    return nullptr;
}

std::string FormatNames() {
    std::string names;
    for (const FormatAdapter* f : Formats())
        names += (names.empty() ? "" : ", ") + std::string(f->name);
    return names.empty() ? std::string("none in this build") : names;
}

namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string Shown(const std::string& path) {
    return path.empty() || path == "-" ? std::string("<stdin>") : path;
}

const FormatAdapter* Named(const std::string& name, const char* option) {
    const FormatAdapter* format = FindFormat(name);
    if (format == nullptr) {
        throw UsageError(std::string(option) + ": unknown format '" + name + "' (this build has " +
                         FormatNames() + ")");
    }
    return format;
}

// --from, else the file's extension, else what the text looks like.
const FormatAdapter* ImportFormat(const BridgeOptions& options, const std::string& text) {
    if (!options.format.empty()) return Named(options.format, "--from");
    const std::string path = Lower(options.input);
    for (const FormatAdapter* f : Formats()) {
        for (const char* ext : f->extensions) {
            const std::string e(ext);
            if (path.size() > e.size() && path.compare(path.size() - e.size(), e.size(), e) == 0)
                return f;
        }
    }
    for (const FormatAdapter* f : Formats()) {
        if (f->importText != nullptr && f->looksLike(text.data(), text.size())) return f;
    }
    throw UsageError("cannot tell the format of " + Shown(options.input) +
                     ": name it with --from (" + FormatNames() + ")");
}

// How the tool's messages name an item of a file of streams: its kind and
// its place in the file counted from 1, then the instance number its stream
// carries (which counts from 0, and which an export does not renumber):
// "event 1 (instance 0)".
std::string ItemWho(const std::string& kind, std::size_t index, const std::uint8_t* stream,
                    std::size_t size, const std::string& more = std::string()) {
    unsigned int instance = 0;
    const bool has = PimShared::ReadItemInstance(stream, size, instance);
    std::string who = kind + ' ' + std::to_string(index + 1);
    if (has || !more.empty()) {
        who += " (" + (has ? "instance " + std::to_string(instance) : std::string());
        who += (has && !more.empty() ? ", " : "") + more + ")";
    }
    return who;
}

std::string Times(unsigned int count) {
    return count > 1 ? " (" + std::to_string(count) + " times)" : std::string();
}

// "RRULE not carried", "DTSTAMP not carried (export writes it anew)",
// "SUMMARY converted (from windows-1252)", "DESCRIPTION cut (16 MiB)".
std::string Said(const PimBridge::Loss& loss, const char* notCarried) {
    using Kind = PimBridge::Loss::Kind;
    std::string said = loss.name;
    switch (loss.kind) {
        case Kind::NotCarried:
            said += notCarried;
            break;
        case Kind::Regenerated:
            said += " not carried (written anew by rule)";
            break;
        case Kind::Converted:
            said += " converted";
            break;
        case Kind::Limit:
            said += " over a limit";
            break;
    }
    if (!loss.detail.empty()) said += " (" + loss.detail + ")";
    return said + Times(loss.count);
}

// A regenerated value is a note even under --strict; everything else is a
// warning, or an error with --strict.
const char* Level(const PimBridge::Loss& loss, bool strict) {
    if (!loss.Changes()) return "note: ";
    return strict ? "error: " : "warning: ";
}

}  // namespace

int Import(const BridgeOptions& options, std::ostream& err) {
    if (options.output.empty() && isatty(STDOUT_FILENO)) {
        throw UsageError(
            "import writes binary item streams: name a file with -o FILE, or write to the "
            "terminal anyway with -o -");
    }
    const std::string text = ReadInput(options.input);
    const FormatAdapter* format = ImportFormat(options, text);
    if (format->importText == nullptr) {
        throw UsageError(std::string("the ") + format->name + " bridge only writes");
    }
    const PimBridge::ImportResult result = format->importText(text.data(), text.size());
    const std::string where = Shown(options.input);
    if (!result.ok) {
        throw UsageError(where + ":" +
                         (result.errorLine != 0 ? std::to_string(result.errorLine) + ":" : "") +
                         " " + result.error);
    }
    for (const PimBridge::Loss& loss : result.losses) {
        err << Level(loss, options.strict) << where << ':' << loss.line << ": "
            << Said(loss, " not carried") << '\n';
    }
    for (std::size_t i = 0; i < result.items.size(); ++i) {
        const PimBridge::ImportedItem& item = result.items[i];
        for (const PimBridge::Loss& loss : item.losses) {
            err << Level(loss, options.strict) << where << ':' << loss.line << ": "
                << ItemWho(item.kind, i, result.streams.data() + item.offset, item.size) << ": "
                << Said(loss, " not carried") << '\n';
        }
    }
    if (options.strict && result.HasLoss()) return kExitProblem;
    WriteOutput(options.output, std::string(result.streams.begin(), result.streams.end()));
    return 0;
}

namespace {

int Merge(const FormatAdapter& format, const BridgeOptions& options, std::ostream& err) {
    if (format.mergeItems == nullptr) {
        throw UsageError(std::string("--onto: the ") + format.name +
                         " bridge has no merge onto an original");
    }
    const std::string original = ReadInput(options.onto);
    const std::string base = options.base.empty() ? std::string() : ReadInput(options.base);
    const std::string raw = ReadInput(options.input);
    PimBridge::MergeOptions merge;
    if (!options.base.empty()) {
        merge.base = base.data();
        merge.baseSize = base.size();
    }
    merge.preferDevice = options.prefer == "device";
    const PimBridge::MergeResult result =
        format.mergeItems(original.data(), original.size(),
                          reinterpret_cast<const std::uint8_t*>(raw.data()), raw.size(), merge);
    if (!result.ok) {
        const bool inBase = result.error.compare(0, 8, "the base") == 0;
        const std::string where = inBase ? options.base : options.onto;
        throw UsageError(where + ":" +
                         (result.errorLine != 0 ? std::to_string(result.errorLine) + ":" : "") +
                         " " + result.error);
    }
    bool failed = false;
    for (std::size_t i = 0; i < result.items.size(); ++i) {
        const PimBridge::MergedItem& item = result.items[i];
        const bool bad = item.outcome == PimBridge::MergedItem::Outcome::Failed;
        failed = failed || bad;
        err << (bad ? "error: " : "") << item.kind << ' ' << i + 1;
        if (!item.uid.empty()) err << " (UID " << item.uid << ')';
        err << ": " << PimBridge::Describe(item) << '\n';
        for (const PimBridge::Loss& loss : item.losses) {
            const std::string noPlace = std::string(" has no place in ") + format.title;
            err << Level(loss, false) << item.kind << ' ' << i + 1 << ": "
                << Said(loss, noPlace.c_str()) << '\n';
        }
    }
    if (failed) return kExitProblem;
    WriteOutput(options.output, result.text);
    return 0;
}

}  // namespace

int Export(const BridgeOptions& options, std::ostream& err) {
    const FormatAdapter* format = Named(options.format, "--to");
    if (!options.onto.empty()) return Merge(*format, options, err);
    if (format->exportItems == nullptr) {
        throw UsageError(std::string("the ") + format->name + " bridge only reads");
    }
    const std::string raw = ReadInput(options.input);
    const PimBridge::ExportResult result =
        format->exportItems(reinterpret_cast<const std::uint8_t*>(raw.data()), raw.size());
    if (!result.ok) throw UsageError(Shown(options.input) + ": " + result.error);
    bool reported = false;
    for (std::size_t i = 0; i < result.items.size(); ++i) {
        const PimBridge::ExportedItem& item = result.items[i];
        const std::uint8_t* stream = reinterpret_cast<const std::uint8_t*>(raw.data());
        const std::string who =
            ItemWho(item.kind, i, stream + item.offset, raw.size() - item.offset,
                    "offset " + std::to_string(item.offset)) +
            ": ";
        for (const PimBridge::Diagnostic& d : item.diagnostics) {
            err << "warning: " << who << "code " << d.code << ": " << d.text << '\n';
            reported = true;
        }
        if (item.malformed) {
            err << "warning: " << who << "malformed stream, written up to the fault\n";
            reported = true;
        }
        const std::string noPlace = std::string(" has no place in ") + format->title;
        for (const PimBridge::Loss& loss : item.losses) {
            err << Level(loss, false) << who << Said(loss, noPlace.c_str()) << '\n';
        }
    }
    WriteOutput(options.output, result.text);
    return reported ? kExitProblem : 0;
}

}  // namespace PimTool
