#include "core/vocabulary/refusals.h"

#include <array>

#include "core/vocabulary/indexed_table.h"

namespace sorvik {
namespace {

struct Row {
    Refusal refusal;
    const char* sentence;
};

constexpr std::array sentences{
    Row{Refusal::folder, "This is a folder, not a picture."},
    Row{Refusal::namedPipe, "This is a named pipe, not a picture."},
    Row{Refusal::socket, "This is a socket, not a picture."},
    Row{Refusal::device, "This is a device, not a picture."},
    Row{Refusal::danglingLink, "This link points to a file that does not exist."},
    Row{Refusal::loopingLink, "This link points back to itself."},
    Row{Refusal::emptyFile, "This file is empty."},
    Row{Refusal::tooLarge, "This picture is too large to be converted."},
    Row{Refusal::changedMeanwhile, "The file changed while it was being converted. Please try again."},
    Row{Refusal::outputNotAFile, "Something that is not a file stands where the result would go."},
    Row{Refusal::outputNameTooLong, "The result's name would be too long. Please shorten the file's name."},
    Row{Refusal::outputIsSource, "The result would replace the original. Please set a prefix or a suffix."},
    Row{Refusal::framesWouldBeLost, "This picture is animated, and compressing it would lose its frames."},
    Row{Refusal::documentWouldLose,
        "Compressing would take forms, attachments, layers or protection from the original. Please set a prefix or a "
        "suffix."},
};

static_assert(isIndexedBy(sentences, &Row::refusal) &&
              sentences.size() == static_cast<std::size_t>(Refusal::documentWouldLose) + 1);

}  // namespace

QString sentence(Refusal refusal) { return QString::fromUtf8(sentences[static_cast<std::size_t>(refusal)].sentence); }

}  // namespace sorvik
