// pimtlv: look into, check and write the TLV streams of PIM items.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>

#include <CLI/CLI.hpp>

#include "Bridges.h"
#include "Commands.h"

namespace {

using namespace PimTool;

bool ColourWanted(const std::string& mode) {
    if (mode == "always") return true;
    if (mode == "never") return false;
    const char* term = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr && term != nullptr &&
           std::string(term) != "dumb";
}

std::string ItemsFooter() {
    std::string built;
    for (const ItemAdapter* a : Adapters())
        built += std::string(built.empty() ? "" : ", ") + a->kind;
    std::string text = "Items: " + KindNames() + ".\nIn this build: " +
                       (built.empty() ? std::string("none (dump only)") : built) + ".";
    return text;
}

std::string AsymmetryFooter() {
    std::string text = ItemsFooter();
    for (const ItemAdapter* a : Adapters()) {
        if (a->asymmetries != nullptr && *a->asymmetries != 0) {
            text += std::string("\n") + a->kind + ": " + a->asymmetries;
        }
    }
    return text;
}

int Run(int argc, char** argv) {
    CLI::App app{"Look into, check and write the TLV streams of PIM items.", "pimtlv"};
    app.set_version_flag("--version", std::string("pimtlv ") + PIMTLV_TOOL_VERSION);
    app.require_subcommand(1);
    app.footer(ItemsFooter());

    Options options;
    std::string colour = "auto";
    const auto input = [&options](CLI::App* cmd, const char* what) {
        cmd->add_option("file", options.input,
                        std::string(what) + " (\"-\" or none: standard input)");
    };
    const auto item = [&options](CLI::App* cmd) {
        cmd->add_option("--item", options.item,
                        "the item kind, instead of telling it from the stream");
    };

    CLI::App* dump = app.add_subcommand("dump", "Print the element tree, one element per line.");
    input(dump, "the stream");
    dump->add_flag("--hex", options.hex, "the input is hex text");
    dump->add_option("--color,--colour", colour, "colour the output: auto, always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    item(dump);

    CLI::App* decode =
        app.add_subcommand("decode", "Run the item's parser; print its calls as JSON.");
    input(decode, "the stream");
    decode->add_flag("--hex", options.hex, "the input is hex text");
    decode->add_flag("--trace", options.trace, "keep the parser's code-0 trace lines");
    item(decode);

    CLI::App* encode =
        app.add_subcommand("encode", "Write the stream that a decode document describes.");
    input(encode, "the JSON document");
    encode->add_flag("--hex", options.hex, "write hex text instead of binary");
    encode->add_option("-o,--output", options.output,
                       "output file (\"-\" or none: standard output)");
    encode->footer(AsymmetryFooter());

    CLI::App* check = app.add_subcommand("check", "List the parser's diagnostics; exit 1 if any.");
    input(check, "the stream");
    check->add_flag("--hex", options.hex, "the input is hex text");
    item(check);

    std::string opsItem;
    CLI::App* ops = app.add_subcommand("ops", "List an item's operations and argument names.");
    ops->add_option("item", opsItem, "the item kind")->required();

    BridgeOptions bridge;
    CLI::App* import = app.add_subcommand(
        "import", "Turn iCalendar, vCard or MIME text into item streams, one after another.");
    import->add_option("file", bridge.input, "the text (\"-\" or none: standard input)");
    import->add_option("-o,--output", bridge.output,
                       "output file (\"-\" or none: standard output)");
    import->add_option("--from", bridge.format,
                       "the text's format, instead of telling it from the name or the content (" +
                           FormatNames() + ")");
    import->add_flag("--strict", bridge.strict,
                     "anything the items cannot carry is an error: exit 1, nothing written");

    CLI::App* exportCmd = app.add_subcommand(
        "export", "Turn a file of item streams into iCalendar, vCard or MIME text.");
    exportCmd->add_option("file", bridge.input, "the item streams (\"-\" or none: standard input)");
    exportCmd->add_option("-o,--output", bridge.output,
                          "output file (\"-\" or none: standard output)");
    exportCmd->add_option("--to", bridge.format, "the text format (" + FormatNames() + ")")
        ->required();
    CLI::Option* onto = exportCmd->add_option(
        "--onto", bridge.onto,
        "merge the items onto this original text (the file they were imported from): what the "
        "items cannot carry is kept from it; the report goes to standard error");
    exportCmd
        ->add_option("--base", bridge.base,
                     "with --onto: the text that was sent to the device, for a three-way "
                     "merge")
        ->needs(onto);
    exportCmd
        ->add_option("--prefer", bridge.prefer,
                     "with --base: who wins a property changed on both sides (default: "
                     "server)")
        ->check(CLI::IsMember({"device", "server"}))
        ->needs(onto);

    if (argc > 1 && argv[1][0] != '-' &&
        app.get_subcommands([&argv](const CLI::App* c) { return c->get_name() == argv[1]; })
            .empty()) {
        std::cerr << "error: unknown command '" << argv[1]
                  << "' (expected dump, decode, encode, check, ops, import or export)\n";
        return kExitUsage;
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        std::cerr << "error: " << e.what() << '\n';
        return kExitUsage;
    }
    options.color = ColourWanted(colour);
    if (dump->parsed()) return Dump(options, std::cout, std::cerr);
    if (decode->parsed()) return Decode(options, std::cout, std::cerr);
    if (encode->parsed()) return Encode(options, std::cerr);
    if (ops->parsed()) return ListOps(opsItem, std::cout);
    if (import->parsed()) return Import(bridge, std::cerr);
    if (exportCmd->parsed()) return Export(bridge, std::cerr);
    return Check(options, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    try {
        return Run(argc, argv);
    } catch (const UsageError& e) {
        std::cerr << "error: " << e.what() << '\n';
    } catch (const std::bad_alloc&) {
        std::cerr << "error: out of memory\n";
    } catch (const std::exception& e) {
        std::cerr << "error: " << e.what() << '\n';
    } catch (...) {
        std::cerr << "error: unexpected failure\n";
    }
    return kExitUsage;
}
