#include "imaging/sips/full/avif_metadata.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "imaging/sips/byte_reader.h"
#include "imaging/sips/full/iso_boxes.h"

namespace sorvik::sips {

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t fullBoxHeader = 4;  // version and flags
constexpr std::string_view xmpType = "application/rdf+xml";
constexpr std::uint64_t highestShortId = std::numeric_limits<std::uint16_t>::max();

void require(bool familiar) {
    if (!familiar) {
        throwUnfamiliar();
    }
}

/// The only box of a type; absent when there is none.
std::optional<IsoBox> onlyBox(const std::vector<IsoBox>& boxes, std::string_view type) {
    require(std::ranges::count(boxes, type, &IsoBox::type) <= 1);
    const auto box = std::ranges::find(boxes, type, &IsoBox::type);
    return box == boxes.end() ? std::nullopt : std::optional(*box);
}

IsoBox neededBox(const std::vector<IsoBox>& boxes, std::string_view type) {
    const auto box = onlyBox(boxes, type);
    require(box.has_value());
    return *box;
}

struct Extent {
    std::uint64_t offset;  ///< in the file
    std::uint64_t length;
};

struct Location {
    std::uint64_t item;
    std::vector<Extent> extents;
};

/// Where items lie. Those in other files, in `idat` or in other items are unfamiliar.
std::vector<Location> locationsIn(Bytes iloc, std::uint64_t fileSize) {
    IsoReader reader(iloc);
    const std::uint64_t version = reader.number(1);
    require(version <= 2);
    reader.take(3);
    const std::uint64_t sizes = reader.number(2);
    const auto offsetSize = static_cast<std::size_t>(sizes >> 12);
    const auto lengthSize = static_cast<std::size_t>(sizes >> 8 & 15);
    const auto baseSize = static_cast<std::size_t>(sizes >> 4 & 15);
    require(offsetSize <= 8 && lengthSize <= 8 && baseSize <= 8 && (sizes & 15) == 0);
    const std::size_t idSize = version == 2 ? 4 : 2;
    std::vector<Location> locations;
    for (std::uint64_t left = reader.number(idSize); left > 0; --left) {
        Location location{reader.number(idSize), {}};
        require(version == 0 || reader.number(2) == 0);
        require(reader.number(2) == 0);
        const std::uint64_t base = reader.number(baseSize);
        for (std::uint64_t extents = reader.number(2); extents > 0; --extents) {
            const std::uint64_t offset = reader.number(offsetSize);
            const std::uint64_t length = reader.number(lengthSize);
            require(base <= fileSize && offset <= fileSize - base && length > 0 && length <= fileSize - base - offset);
            location.extents.push_back({base + offset, length});
        }
        locations.push_back(std::move(location));
    }
    return locations;
}

std::vector<std::byte> locationBox(const std::vector<Location>& locations) {
    constexpr std::uint64_t fourBytesEach = 0x4400;
    require(locations.size() <= highestShortId);
    IsoBuilder box;
    box.number(0, fullBoxHeader).number(fourBytesEach, 2).number(locations.size(), 2);
    for (const Location& location : locations) {
        require(location.item <= highestShortId);
        box.number(location.item, 2).number(0, 2).number(location.extents.size(), 2);
        for (const Extent& extent : location.extents) {
            require(extent.offset + extent.length <= std::numeric_limits<std::uint32_t>::max());
            box.number(extent.offset, 4).number(extent.length, 4);
        }
    }
    return isoBox("iloc", box.content());
}

struct Items {
    std::uint64_t highestId = 0;
    bool exif = false;
    bool xmp = false;
};

std::size_t itemListHeader(Bytes iinf) {
    const std::uint64_t version = IsoReader(iinf).number(1);
    require(version <= 1);
    return fullBoxHeader + (version == 0 ? 2 : 4);
}

Items itemsIn(Bytes iinf) {
    Items items;
    IsoReader list(iinf);
    list.take(itemListHeader(iinf));
    for (const IsoBox& entry : isoBoxesIn(list.rest())) {
        IsoReader reader(entry.content);
        const std::uint64_t version = reader.number(1);
        require(entry.type == "infe" && (version == 2 || version == 3));
        reader.take(3);
        items.highestId = std::max(items.highestId, reader.number(version == 2 ? 2 : 4));
        reader.take(2);
        const std::string_view type = textOf(reader.take(4));
        items.exif |= type == "Exif";
        items.xmp |= type == "mime" && textOf(reader.rest()).find(xmpType) != std::string_view::npos;
    }
    return items;
}

struct NewItem {
    std::uint64_t id;
    std::string_view type;
    std::string_view contentType;  ///< of type `mime`
    std::vector<std::byte> data;
};

std::vector<NewItem> lackingItems(const Items& items, const codecs::PictureMetadata& metadata) {
    std::vector<NewItem> lacking;
    std::uint64_t id = items.highestId;
    if (!metadata.exif.empty() && !items.exif) {
        // In front the distance to the TIFF stream.
        lacking.push_back({++id, "Exif", {}, IsoBuilder().number(0, 4).bytes(metadata.exif).content()});
    }
    if (!metadata.xmp.empty() && !items.xmp) {
        lacking.push_back({++id, "mime", xmpType, metadata.xmp});
    }
    require(id <= highestShortId);
    return lacking;
}

std::vector<std::byte> itemBox(Bytes iinf, const std::vector<NewItem>& added) {
    const std::size_t header = itemListHeader(iinf);
    const std::size_t countSize = header - fullBoxHeader;
    IsoReader reader(iinf);
    IsoBuilder box;
    box.bytes(reader.take(fullBoxHeader));
    const std::uint64_t count = reader.number(countSize) + added.size();
    require(count <= highestShortId);
    box.number(count, countSize).bytes(reader.rest());
    for (const NewItem& item : added) {
        constexpr std::uint64_t versionTwo = 0x02000000;
        IsoBuilder entry;
        entry.number(versionTwo, fullBoxHeader).number(item.id, 2).number(0, 2).text(item.type).number(0, 1);
        if (!item.contentType.empty()) {
            entry.text(item.contentType).number(0, 1);
        }
        box.bytes(isoBox("infe", entry.content()));
    }
    return isoBox("iinf", box.content());
}

/// Every new item describes the primary one.
std::vector<std::byte> referenceBox(Bytes iref, const std::vector<NewItem>& added, std::uint64_t primary) {
    IsoBuilder box;
    box.bytes(iref);
    const std::uint64_t version = IsoReader(iref).number(1);
    require(version <= 1 && iref.size() >= fullBoxHeader);
    const std::size_t idSize = version == 0 ? 2 : 4;
    for (const NewItem& item : added) {
        const IsoBuilder reference = IsoBuilder().number(item.id, idSize).number(1, 2).number(primary, idSize);
        box.bytes(isoBox("cdsc", reference.content()));
    }
    return isoBox("iref", box.content());
}

std::uint64_t primaryItem(Bytes pitm) {
    IsoReader reader(pitm);
    const std::uint64_t version = reader.number(1);
    reader.take(3);
    const std::uint64_t id = reader.number(version == 0 ? 2 : 4);
    require(version <= 1 && id > 0 && id <= highestShortId);
    return id;
}

bool isProfile(const IsoBox& property) {
    return property.type == "colr" && (holdsAt(property.content, 0, "prof") || holdsAt(property.content, 0, "rICC"));
}

/// `ipma` with the property `index` in front of those of the primary item: what describes comes before
/// what turns and crops.
std::vector<std::byte> associationBox(Bytes ipma, std::uint64_t primary, std::uint64_t index) {
    IsoReader reader(ipma);
    IsoBuilder box;
    const std::uint64_t header = reader.number(fullBoxHeader);
    const std::size_t idSize = header >> 24 == 0 ? 2 : 4;
    const std::size_t indexSize = (header & 1) == 0 ? 1 : 2;
    const std::uint64_t entries = reader.number(4);
    require(header >> 24 <= 1 && index < (indexSize == 1 ? 0x80U : 0x8000U));
    box.number(header, fullBoxHeader).number(entries, 4);
    bool found = false;
    for (std::uint64_t left = entries; left > 0; --left) {
        const std::uint64_t item = reader.number(idSize);
        const std::uint64_t count = reader.number(1);
        const bool here = item == primary;
        require(!here || (!found && count < 255));
        found |= here;
        box.number(item, idSize).number(count + (here ? 1 : 0), 1).number(index, here ? indexSize : 0);
        box.bytes(reader.take(static_cast<std::size_t>(count) * indexSize));
    }
    require(found);
    return isoBox("ipma", box.content());
}

std::vector<std::byte> propertyBox(const IsoBox& iprp, Bytes icc, std::uint64_t primary) {
    const auto parts = isoBoxesIn(iprp.content);
    const IsoBox container = neededBox(parts, "ipco");
    const auto properties = isoBoxesIn(container.content);
    if (icc.empty() || std::ranges::any_of(properties, isProfile)) {
        return {iprp.whole.begin(), iprp.whole.end()};
    }
    const auto profile = isoBox("colr", IsoBuilder().text("prof").bytes(icc).content());
    const IsoBuilder grown = IsoBuilder().bytes(container.content).bytes(profile);
    const IsoBox associations = neededBox(parts, "ipma");
    require(parts.size() == 2);
    IsoBuilder box;
    box.bytes(isoBox("ipco", grown.content()));
    box.bytes(associationBox(associations.content, primary, properties.size() + 1));
    return isoBox("iprp", box.content());
}

std::vector<std::byte> metaBox(const IsoBox& meta, const codecs::PictureMetadata& metadata,
                               const std::vector<NewItem>& added, const std::vector<Location>& locations) {
    const auto parts = isoBoxesIn(meta.content.subspan(fullBoxHeader));
    const std::uint64_t primary = primaryItem(neededBox(parts, "pitm").content);
    IsoBuilder box;
    box.bytes(meta.content.first(fullBoxHeader));
    for (const IsoBox& part : parts) {
        if (part.type == "iinf") {
            box.bytes(itemBox(part.content, added));
        } else if (part.type == "iloc") {
            box.bytes(locationBox(locations));
        } else if (part.type == "iprp") {
            box.bytes(propertyBox(part, metadata.icc, primary));
        } else if (part.type != "iref") {
            box.bytes(part.whole);
        }
    }
    const auto references = onlyBox(parts, "iref");
    constexpr std::array<std::byte, fullBoxHeader> none{};
    if (references || !added.empty()) {
        box.bytes(referenceBox(references ? references->content : Bytes(none), added, primary));
    }
    return isoBox("meta", box.content());
}

/// Where everything lies once the boxes behind `meta` have moved by `growth`, and the data of new items
/// follow each other from `end` on.
std::vector<Location> moved(std::vector<Location> locations, const IsoBox& meta, std::uint64_t growth,
                            const std::vector<NewItem>& added, std::uint64_t end) {
    const std::uint64_t metaEnd = meta.offset + meta.whole.size();
    for (Location& location : locations) {
        for (Extent& extent : location.extents) {
            require(extent.offset >= metaEnd || extent.offset + extent.length <= meta.offset);
            extent.offset += extent.offset >= metaEnd ? growth : 0;
        }
    }
    for (const NewItem& item : added) {
        locations.push_back({item.id, {{end, item.data.size()}}});
        end += item.data.size();
    }
    return locations;
}

/// Other boxes may hold places in the file too.
void requireFamiliar(const std::vector<IsoBox>& top) {
    constexpr std::array known = {"ftyp", "meta", "mdat", "free"};
    require(!top.empty() && top.front().type == "ftyp");
    require(std::ranges::all_of(top, [&](const IsoBox& box) { return std::ranges::count(known, box.type) == 1; }));
}

}  // namespace

std::vector<std::byte> avifWithMetadata(std::span<const std::byte> avif, const codecs::PictureMetadata& metadata) {
    constexpr std::size_t boxHeader = 8;
    const auto top = isoBoxesIn(avif);
    requireFamiliar(top);
    const IsoBox meta = neededBox(top, "meta");
    require(meta.content.size() >= fullBoxHeader);
    const auto parts = isoBoxesIn(meta.content.subspan(fullBoxHeader));
    neededBox(parts, "iprp");
    const auto old = locationsIn(neededBox(parts, "iloc").content, avif.size());
    Items items = itemsIn(neededBox(parts, "iinf").content);
    for (const Location& location : old) {
        items.highestId = std::max(items.highestId, location.item);
    }
    const auto added = lackingItems(items, metadata);
    // The numbers in it don't change its size.
    const std::size_t grownSize = metaBox(meta, metadata, added, moved(old, meta, 0, added, 0)).size();
    const std::size_t growth = grownSize - meta.whole.size();
    const auto grown =
        metaBox(meta, metadata, added, moved(old, meta, growth, added, avif.size() + growth + boxHeader));
    IsoBuilder data;
    for (const NewItem& item : added) {
        data.bytes(item.data);
    }
    IsoBuilder file;
    file.bytes(avif.first(meta.offset)).bytes(grown).bytes(avif.subspan(meta.offset + meta.whole.size()));
    if (!added.empty()) {
        file.bytes(isoBox("mdat", data.content()));
    }
    return file.content();
}

}  // namespace sorvik::sips
