#pragma once

#include <cstddef>
#include <cstdint>

/// What a document may ask for. Beyond it a document ends in an error that says so: every file costs less than five
/// seconds and 512 MB.
namespace sorvik::draw::limits {

inline constexpr std::size_t nesting = 1024;        ///< open elements at a time
inline constexpr std::size_t elements = 1'000'000;  ///< of one document
inline constexpr std::size_t fileBytes = 256U << 20U;
inline constexpr std::size_t entities = 1024;               ///< declared by one document
inline constexpr std::size_t xmlParserBytes = 160U << 20U;  ///< of memory for what is being read
inline constexpr std::size_t treeBytes = 200U << 20U;       ///< of memory for the elements as they are written
inline constexpr std::size_t documentBytes = 200U << 20U;   ///< and as they are understood
inline constexpr std::size_t pathSegments = 250'000;        ///< of one path
inline constexpr std::size_t listItems = 100'000;           ///< of other lists: numbers, transforms, pairs of a style
inline constexpr std::size_t selectors = 100'000;           ///< of all style sheets
inline constexpr std::size_t faultyStyleSheets = 1000;      ///< each is told in a line of its own
inline constexpr std::size_t styleSheetBytes = 16U << 20U;  ///< of all, each value counted for each of its selectors
inline constexpr std::size_t classNames = 5'000'000;        ///< looked up in style sheets, of all elements drawn
inline constexpr std::size_t gradientStops = 4096;          ///< of one gradient
inline constexpr std::size_t expansions = 1'000'000;  ///< layers made by use, patterns, masks and clips, of a document
inline constexpr std::size_t expansionDepth = 64;     ///< of them inside each other
/// Of memory for what is to be drawn, with all that the layers refer to by name: an id can be long and used often.
inline constexpr std::size_t layerBytes = 200U << 20U;
inline constexpr std::size_t textCharacters = 100'000;  ///< of one text
/// Of all texts of a document as they are measured: points of their outlines, and something for each text and letter.
inline constexpr std::size_t textWork = 40'000'000;
inline constexpr std::size_t fontFamilies = 256;        ///< that the texts of a document ask for
inline constexpr std::size_t commands = 3'000'000;      ///< of one drawing
inline constexpr std::size_t drawnPoints = 10'000'000;  ///< of all the different paths of a drawing
/// Layers entered, commands made, points looked at, each time that one comes up: what stands in many places is
/// written once and done many times.
inline constexpr std::size_t generatorWork = 50'000'000;
inline constexpr std::int64_t side = 32'767;                ///< pixels, of a picture or canvas
inline constexpr std::int64_t canvasPixels = 100'000'000;   ///< four bytes each
inline constexpr std::int64_t embeddedPixels = 64'000'000;  ///< of all decoded pictures of a document together
/// Cairo 1.16 loses sloping edges of about twice this length without a word.
inline constexpr double deviceCoordinate = 65'536;
inline constexpr double drawingSeconds = 3;  ///< of processor time, for playing the commands

}  // namespace sorvik::draw::limits
