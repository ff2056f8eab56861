#include "core/format_mappings.h"

#include <algorithm>

namespace sorvik {
namespace {

ImageFormat offeredOrFirst(InputFormat input, ImageFormat wanted) {
    const auto offered = supportedOutputFormats(input);
    return std::ranges::find(offered, wanted) == offered.end() ? offered.front() : wanted;
}

}  // namespace

FormatMappings::FormatMappings(DefaultsStore& store) : reader_(store) { reload(); }

void FormatMappings::reload() {
    mappings_.clear();
    for (const auto& [input, output] : reader_.allMappings()) {
        mappings_.push_back({QUuid::createUuid(), input, output});
    }
}

void FormatMappings::addNewMapping() {
    if (const auto input = firstFree()) {
        const ImageFormat output = supportedOutputFormats(*input).front();
        mappings_.push_back({QUuid::createUuid(), *input, output});
        reader_.setMapping(output, *input);
    }
}

void FormatMappings::updateMapping(const QUuid& id, InputFormat input, ImageFormat output) {
    const auto mapping = find(id);
    const FormatMapping* holder = holderOf(input);
    if (mapping == mappings_.end() || (holder != nullptr && holder->id != id)) {
        return;
    }
    reader_.setMapping(std::nullopt, mapping->inputFormat);
    mapping->inputFormat = input;
    mapping->outputFormat = offeredOrFirst(input, output);
    reader_.setMapping(mapping->outputFormat, input);
}

void FormatMappings::removeMapping(const QUuid& id) {
    if (const auto mapping = find(id); mapping != mappings_.end()) {
        reader_.setMapping(std::nullopt, mapping->inputFormat);
        mappings_.erase(mapping);
    }
}

std::vector<InputFormat> FormatMappings::inputsFor(const FormatMapping& mapping) const {
    std::vector<InputFormat> inputs;
    std::ranges::copy_if(allInputFormats(), std::back_inserter(inputs), [&](InputFormat input) {
        const FormatMapping* holder = holderOf(input);
        return holder == nullptr || holder->id == mapping.id;
    });
    return inputs;
}

QString FormatMappings::header() const {
    return mappings_.size() == 1 ? QStringLiteral("1 output configured")
                                 : QStringLiteral("%1 outputs configured").arg(mappings_.size());
}

const FormatMapping* FormatMappings::holderOf(InputFormat input) const {
    const auto found = std::ranges::find(mappings_, input, &FormatMapping::inputFormat);
    return found == mappings_.end() ? nullptr : &*found;
}

std::optional<InputFormat> FormatMappings::firstFree() const {
    const auto inputs = allInputFormats();
    const auto found = std::ranges::find_if(inputs, [this](InputFormat input) { return holderOf(input) == nullptr; });
    return found == inputs.end() ? std::nullopt : std::optional(*found);
}

std::vector<FormatMapping>::iterator FormatMappings::find(const QUuid& id) {
    return std::ranges::find(mappings_, id, &FormatMapping::id);
}

}  // namespace sorvik
