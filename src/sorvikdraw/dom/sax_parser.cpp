#include "sorvikdraw/dom/sax_parser.h"

#define XML_DTD  // declares what the library was built with
#include <expat.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <limits>
#include <new>
#include <utility>

#include "sorvikdraw/dom/input_file.h"
#include "sorvikdraw/dom/limits.h"
#include "sorvikdraw/dom/tree_builder.h"

namespace sorvik::draw::xml {
namespace {

// What Expat holds for the parse that this thread is at: it keeps every tag, text and name whole before it hands it
// over, and its callbacks for memory are told nothing of the parser.
thread_local std::size_t parserBytes = 0;

bool parserMayHold(std::size_t more) { return more <= limits::xmlParserBytes - parserBytes; }

void* allocateForParser(std::size_t bytes) {
    void* const memory = parserMayHold(bytes) ? std::malloc(bytes) : nullptr;
    parserBytes += ::malloc_usable_size(memory);
    return memory;
}

void freeForParser(void* memory) {
    parserBytes -= ::malloc_usable_size(memory);
    std::free(memory);
}

void* reallocateForParser(void* memory, std::size_t bytes) {
    const std::size_t before = ::malloc_usable_size(memory);
    if (bytes > before && !parserMayHold(bytes - before)) {
        return nullptr;
    }
    void* const moved = std::realloc(memory, bytes);
    if (moved != nullptr) {
        parserBytes += ::malloc_usable_size(moved) - before;
    }
    return moved;
}

constexpr XML_Memory_Handling_Suite parserMemory{allocateForParser, reallocateForParser, freeForParser};

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserHandle = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

// How much more a document may say through entities than is written in it, once it says eight megabytes.
constexpr float amplification = 4;

int counted(XML_Size number) { return static_cast<int>(std::min<XML_Size>(number, std::numeric_limits<int>::max())); }

/// One parse from start to end.
class Parse {
public:
    Parse();

    void piece(std::string_view data, bool last);
    void file(const std::filesystem::path& path);
    [[nodiscard]] std::unique_ptr<Tree> finish();

private:
    static void XMLCALL startElement(void* self, const XML_Char* name, const XML_Char** attributes);
    static void XMLCALL endElement(void* self, const XML_Char* name);
    static void XMLCALL characters(void* self, const XML_Char* text, int length);
    static void XMLCALL entityDeclared(void* self, const XML_Char* name, int isParameter, const XML_Char* value,
                                       int length, const XML_Char* base, const XML_Char* systemId,
                                       const XML_Char* publicId, const XML_Char* notation);

    template <typename Event>
    void handle(const Event& event);
    void countEntity();
    void check(XML_Status status) const;
    [[nodiscard]] XMLParserError failure(std::string reason) const;
    [[nodiscard]] SourceLocation location() const;

    std::unique_ptr<Tree> tree_ = std::make_unique<Tree>();
    TreeBuilder builder_{*tree_};
    ParserHandle parser_;
    std::size_t entities_ = 0;
    std::exception_ptr thrown_;  ///< by an event; it may not fly through Expat
};

Parse::Parse() : parser_(XML_ParserCreate_MM(nullptr, &parserMemory, nullptr)) {
    if (!parser_) {
        throw std::bad_alloc();
    }
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser_.get(), characters);
    XML_SetEntityDeclHandler(parser_.get(), entityDeclared);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser_.get(), amplification);
}

void Parse::piece(std::string_view data, bool last) {
    check(XML_Parse(parser_.get(), data.data(), static_cast<int>(data.size()), last ? 1 : 0));
}

void Parse::file(const std::filesystem::path& path) {
    InputFile input(path);
    for (bool first = true, last = false; !last; first = false) {
        void* const buffer = XML_GetBuffer(parser_.get(), static_cast<int>(input.pieceBytes()));
        if (buffer == nullptr) {
            check(XML_STATUS_ERROR);
        }
        const std::size_t read = input.read({static_cast<char*>(buffer), input.pieceBytes()});
        if (first) {
            refuseCompressed({static_cast<const char*>(buffer), read});
        }
        last = read < input.pieceBytes();
        check(XML_ParseBuffer(parser_.get(), static_cast<int>(read), last ? 1 : 0));
    }
}

std::unique_ptr<Tree> Parse::finish() {
    if (tree_->root == nullptr) {
        throw failure("no element in the namespace of SVG");
    }
    return std::move(tree_);
}

// Runs what an event asks for. After a failure Expat may still send the end of an empty element.
template <typename Event>
void Parse::handle(const Event& event) {
    if (thrown_) {
        return;
    }
    try {
        event();
    } catch (...) {
        thrown_ = std::current_exception();
        XML_StopParser(parser_.get(), XML_FALSE);
    }
}

void Parse::startElement(void* self, const XML_Char* name, const XML_Char** attributes) {
    auto& parse = *static_cast<Parse*>(self);
    parse.handle([&] { parse.builder_.startElement(name, attributes, parse.location()); });
}

void Parse::endElement(void* self, const XML_Char* /*name*/) {
    auto& parse = *static_cast<Parse*>(self);
    parse.handle([&] { parse.builder_.endElement(); });
}

void Parse::characters(void* self, const XML_Char* text, int length) {
    auto& parse = *static_cast<Parse*>(self);
    parse.handle([&] { parse.builder_.characters({text, static_cast<std::size_t>(length)}); });
}

void Parse::entityDeclared(void* self, const XML_Char* /*name*/, int /*isParameter*/, const XML_Char* /*value*/,
                           int /*length*/, const XML_Char* /*base*/, const XML_Char* /*systemId*/,
                           const XML_Char* /*publicId*/, const XML_Char* /*notation*/) {
    auto& parse = *static_cast<Parse*>(self);
    parse.handle([&] { parse.countEntity(); });
}

// Expat expands entities inside each other by recursion.
void Parse::countEntity() {
    if (++entities_ > limits::entities) {
        throw XMLParserError::other("more than " + std::to_string(limits::entities) + " entities");
    }
}

void Parse::check(XML_Status status) const {
    if (status == XML_STATUS_OK) {
        return;
    }
    if (!thrown_) {
        const XML_Error code = XML_GetErrorCode(parser_.get());
        throw failure(code == XML_ERROR_NO_MEMORY ? "too large: a tag or text takes too much memory"
                                                  : XML_ErrorString(code));
    }
    try {
        std::rethrow_exception(thrown_);
    } catch (const XMLParserError& error) {
        throw failure(error.reason());
    }
}

XMLParserError Parse::failure(std::string reason) const {
    const Element* const open = builder_.openElement();
    return XMLParserError::invalidDocument(
        std::move(reason), open != nullptr ? std::optional<std::string>(open->name) : std::nullopt, location());
}

SourceLocation Parse::location() const {
    return {counted(XML_GetCurrentLineNumber(parser_.get())), counted(XML_GetCurrentColumnNumber(parser_.get()) + 1)};
}

}  // namespace

std::unique_ptr<Tree> SAXParser::parseContentsOf(const std::filesystem::path& file) {
    Parse parse;
    parse.file(file);
    return parse.finish();
}

std::unique_ptr<Tree> SAXParser::parse(std::string_view data) {
    refuseCompressed(data);
    refuseTooLong(data.size());
    Parse parse;
    parse.piece(data, true);
    return parse.finish();
}

}  // namespace sorvik::draw::xml
