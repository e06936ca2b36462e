#include "qlt/topologyCodec.h"

#include "qlt/groupCodec.h"

#include <bit>
#include <climits>
#include <memory>
#include <typeinfo>
#include <utility>

// What is written and what is read stand side by side, in the order of the file.

namespace tarnex {

namespace {

enum class ValueType : std::uint8_t { integer = 1, real = 2, text = 3 };

// Attributes. Either all groups have their value in the file, or none has, if none was ever set.

template <class Attribute>
void putNumbers(Attribute const& attribute, int numGroups, SectionWriter& out) {
    std::int64_t const begin = out.bytes.size;
    out.put(numGroups);
    char* place = out.extend(std::int64_t{numGroups} * 4);
    std::uint32_t anyBits = 0;
    for (int i = 0; i < numGroups; ++i, place += 4) {
        auto const bits = std::bit_cast<std::uint32_t>(attribute.getValue(i));
        anyBits |= bits;
        storeLittle(place, bits);
    }
    if (anyBits != 0) return;
    out.bytes.resize(begin);
    out.put(0);
}

template <class Value, class Attribute>
bool getNumbers(SectionReader& in, int numGroups, Attribute& attribute) {
    auto const count = in.get<std::int32_t>();
    if (count == 0) return !in.failed();
    char const* place = count == numGroups ? in.take(static_cast<std::uint64_t>(count) * 4) : nullptr;
    if (!place) return false;
    for (int i = 0; i < count; ++i, place += 4) {
        attribute.setValue(i, std::bit_cast<Value>(loadLittle<std::uint32_t>(place)));
    }
    return true;
}

void putTexts(MtStringAttribute const& attribute, int numGroups, SectionWriter& out) {
    std::int64_t const begin = out.bytes.size;
    out.put(numGroups);
    for (int i = 0; i < numGroups; ++i) out.putText(attribute.getValue(i));
    // One byte for each text: all of them are empty.
    if (out.bytes.size - begin > std::int64_t{numGroups} + 4) return;
    out.bytes.resize(begin);
    out.put(0);
}

bool getTexts(SectionReader& in, int numGroups, MtStringAttribute& attribute) {
    auto const count = in.get<std::int32_t>();
    if (count == 0) return !in.failed();
    if (count != numGroups || static_cast<std::uint64_t>(count) > in.bytesLeft()) return false;
    for (int i = 0; i < count && !in.failed(); ++i) attribute.setValue(i, in.getText());
    return !in.failed();
}

void putAttributeHead(ValueType type, MtGroupAttribute const& attribute, SectionWriter& out) {
    out.put(type);
    out.putText(attribute.getName());
}

bool putAttribute(MtGroupAttribute const& attribute, int numGroups, SectionWriter& out) {
    std::type_info const& type = typeid(attribute);
    if (type == typeid(MtIntegerAttribute)) {
        putAttributeHead(ValueType::integer, attribute, out);
        putNumbers(static_cast<MtIntegerAttribute const&>(attribute), numGroups, out);
    } else if (type == typeid(MtFloatAttribute)) {
        putAttributeHead(ValueType::real, attribute, out);
        putNumbers(static_cast<MtFloatAttribute const&>(attribute), numGroups, out);
    } else if (type == typeid(MtStringAttribute)) {
        putAttributeHead(ValueType::text, attribute, out);
        putTexts(static_cast<MtStringAttribute const&>(attribute), numGroups, out);
    } else {
        return false;
    }
    return true;
}

/// Makes the attribute without a look for its name, which would take long among very many attributes.
template <class Attribute>
Attribute& appendAttribute(MtGroupingLevel& level, char const* name) {
    auto* attribute = new Attribute(name, level.groups);
    level.attributes.append(attribute);
    return *attribute;
}

bool getAttribute(SectionReader& in, MtGroupingLevel& level) {
    auto const type = in.get<ValueType>();
    char const* name = in.getText();
    auto const numGroups = static_cast<int>(level.groups.size);
    switch (type) {
    case ValueType::integer:
        return getNumbers<int>(in, numGroups, appendAttribute<MtIntegerAttribute>(level, name));
    case ValueType::real:
        return getNumbers<float>(in, numGroups, appendAttribute<MtFloatAttribute>(level, name));
    case ValueType::text:
        return getTexts(in, numGroups, appendAttribute<MtStringAttribute>(level, name));
    default:
        return false;
    }
}

// Levels

bool putLevel(MtGroupingLevel const& level, std::uint64_t& numAtoms, SectionWriter& out) {
    if (level.groups.size > INT_MAX || level.attributes.size > INT_MAX) return false;
    out.putText(level.getName());
    out.put(level.getLowerLevelIx());
    out.put(level.getKind());
    out.put(level.getReserved());
    out.put(level.flags);
    if (!putGroups(level.groups, numAtoms, out)) return false;
    out.put(static_cast<std::uint32_t>(level.attributes.size));
    for (MtGroupAttribute const* attribute : level.attributes) {
        if (!attribute || !putAttribute(*attribute, static_cast<int>(level.groups.size), out)) return false;
    }
    return true;
}

/// Null if there is no level.
std::unique_ptr<MtGroupingLevel> getLevel(SectionReader& in, std::uint64_t& atomsLeft, GroupPool& pool) {
    char const* name = in.getText();
    auto const lowerLevelIx = in.get<std::int32_t>();
    auto const kind = in.get<std::int32_t>();
    auto const reserved = in.get<std::int32_t>();
    auto level = std::make_unique<MtGroupingLevel>(name, lowerLevelIx, kind, reserved);
    level->flags = in.get<std::uint8_t>();
    if (!getGroups(in, atomsLeft, pool, level->groups)) return nullptr;
    auto const numAttributes = in.get<std::uint32_t>();
    for (std::uint32_t i = 0; i < numAttributes; ++i) {
        if (!getAttribute(in, *level)) return nullptr;
    }
    return in.failed() ? nullptr : std::move(level);
}

// Named data

bool putDatum(MolData const& datum, SectionWriter& out) {
    auto const putHead = [&](ValueType type) {
        out.put(type);
        out.putText(datum.getName());
    };
    std::type_info const& type = typeid(datum);
    if (type == typeid(MolDataInt)) {
        putHead(ValueType::integer);
        out.put(static_cast<MolDataInt const&>(datum).getValue());
    } else if (type == typeid(MolDataFloat)) {
        putHead(ValueType::real);
        out.put(std::bit_cast<std::uint32_t>(static_cast<MolDataFloat const&>(datum).getValue()));
    } else if (type == typeid(MolDataString)) {
        McString const& text = static_cast<MolDataString const&>(datum).getValue();
        putHead(ValueType::text);
        out.put(static_cast<std::uint64_t>(text.length()));
        out.putBytes(text, text.length());
    } else {
        return false;
    }
    return true;
}

/// Null if there is no datum.
MolData* getDatum(SectionReader& in) {
    auto const type = in.get<ValueType>();
    char const* name = in.getText();
    if (type == ValueType::text) {
        auto const length = in.get<std::uint64_t>();
        char const* bytes = in.take(length);
        if (!bytes) return nullptr;
        McString text;
        text.append(bytes, static_cast<std::int64_t>(length));
        return new MolDataString(name, text);
    }
    auto const bits = in.get<std::uint32_t>();
    if (in.failed()) return nullptr;
    if (type == ValueType::integer) return new MolDataInt(name, std::bit_cast<int>(bits));
    if (type == ValueType::real) return new MolDataFloat(name, std::bit_cast<float>(bits));
    return nullptr;
}

/// Whether only zeros are left: the bytes that pay for atoms.
bool restIsFilling(SectionReader& in) {
    std::uint64_t const count = in.bytesLeft();
    char const* bytes = in.take(count);
    return bytes && (count == 0 || (bytes[0] == 0 && std::memcmp(bytes, bytes + 1, count - 1) == 0));
}

/// The topology's own first two levels give way to those of the file.
void placeLevel(MolTopology& topology, std::uint32_t levelIx, std::unique_ptr<MtGroupingLevel> level) {
    if (levelIx < topology.levels.size) {
        delete topology.levels[levelIx];
        topology.levels[levelIx] = level.release();
    } else {
        topology.levels.append(level.release());
    }
}

} // namespace

bool encodeTopology(MolTopology const& topology, std::uint64_t& atomsLeft, SectionWriter& out) {
    if (topology.levels.size < 2 || topology.levels.size > INT_MAX || !isSound(topology)) return false;
    std::uint64_t numAtoms = 0;
    out.putText(topology.getName());
    out.put(static_cast<std::uint32_t>(topology.levels.size));
    for (MtGroupingLevel const* level : topology.levels) {
        if (!putLevel(*level, numAtoms, out)) return false;
    }
    out.put(static_cast<std::uint32_t>(topology.getNumData()));
    for (int i = 0; i < topology.getNumData(); ++i) {
        if (!putDatum(*topology.getData(i), out)) return false;
    }

    if (numAtoms <= atomsLeft) {
        atomsLeft -= numAtoms;
    } else if (std::int64_t const missing = static_cast<std::int64_t>(numAtoms) - out.bytes.size; missing > 0) {
        std::memset(out.extend(missing), 0, static_cast<std::size_t>(missing));
    }
    return true;
}

McHandle<MolTopology> decodeTopology(SectionReader in, std::uint64_t& atomsLeft) {
    McHandle<MolTopology> topology(new MolTopology);
    topology->setName(in.getText());
    auto const numLevels = in.get<std::uint32_t>();
    if (numLevels < 2 || numLevels > INT_MAX) return {};
    for (std::uint32_t i = 0; i < numLevels; ++i) {
        auto level = getLevel(in, atomsLeft, topology->groupPool);
        if (!level) return {};
        placeLevel(*topology, i, std::move(level));
    }
    auto const numData = in.get<std::uint32_t>();
    for (std::uint32_t i = 0; i < numData; ++i) {
        MolData* datum = getDatum(in);
        if (!datum) return {};
        topology->setData(datum);
    }
    bool const good = restIsFilling(in) && std::cmp_equal(topology->getNumData(), numData) && isSound(*topology);
    return good ? topology : McHandle<MolTopology>();
}

} // namespace tarnex
