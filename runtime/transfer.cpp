// runtime/transfer.cpp: one item of a statement's list into its record, and out of it.
#include "runtime/conversion.h"
#include "runtime/prepared.h"
#include "runtime/statement.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kestro::rt {

using detail::Item;
using detail::ItemType;

void Statement::put(const FormatToken& edit, const Item& item)
{
    const void* v = item.value;
    // A wide field that cannot fit in what is left of the record fails before it is built.
    if (edit.width > wideField || edit.decimals > wideField) {
        const std::size_t room = recordLimit_ - std::min(recordLimit_, workspace.record.position());
        if (static_cast<std::size_t>(edit.width) > room || static_cast<std::size_t>(edit.decimals) > room)
            return fail(code::recordTooLong);
    }
    switch (item.type) {
    case ItemType::int32:
    case ItemType::int64: {
        const std::int64_t value = item.type == ItemType::int32 ? *static_cast<const std::int32_t*>(v)
                                                                : *static_cast<const std::int64_t*>(v);
        switch (edit.kind) {
        case EditKind::I:
        case EditKind::B:
        case EditKind::O:
        case EditKind::Z:
        case EditKind::G:
            editInteger(workspace.record, edit, value, item.type == ItemType::int32 ? 32 : 64, modes_);
            break;
        default:
            return fail(code::typeMismatch);
        }
        break;
    }
    case ItemType::real32:
    case ItemType::real64: {
        const bool single = item.type == ItemType::real32;
        const double value = single ? *static_cast<const float*>(v) : *static_cast<const double*>(v);
        if (single && edit.kind == EditKind::F && modes_.scale == 0 && edit.decimals <= 12 &&
            editFixedFloat(workspace.record, static_cast<std::size_t>(edit.width), edit.decimals, value,
                           modes_))
            break;
        switch (edit.kind) {
        case EditKind::F:
        case EditKind::E:
        case EditKind::ES:
        case EditKind::EN:
        case EditKind::D:
        case EditKind::G:
            editReal(workspace.record, edit, value, single, modes_);
            break;
        default:
            return fail(code::typeMismatch);
        }
        break;
    }
    case ItemType::logical:
        if (edit.kind != EditKind::L && edit.kind != EditKind::G) return fail(code::typeMismatch);
        editLogical(workspace.record, edit, *static_cast<const bool*>(v));
        break;
    case ItemType::text:
    case ItemType::constText: {
        if (edit.kind == EditKind::A) {
            putText(edit, item);
            break;
        }
        if (edit.kind != EditKind::G) return fail(code::typeMismatch);
        FormatToken a = edit;
        if (edit.kind == EditKind::G) a.hasWidth = edit.width > 0;
        editText(workspace.record, a, std::string_view(static_cast<const char*>(v), item.length));
        break;
    }
    }
}

// Aw or A of a text: right-justified in w, or cut to its first w characters.
void Statement::putText(const FormatToken& edit, const Item& item)
{
    const char* text = static_cast<const char*>(item.value);
    const std::size_t length = item.length;
    if (!edit.hasWidth) return workspace.record.put(std::string_view(text, length));
    const std::size_t width = static_cast<std::size_t>(edit.width);
    if (edit.width > wideField && width > recordLimit_ - std::min(recordLimit_, workspace.record.position()))
        return fail(code::recordTooLong);
    fillText(workspace.record.reserve(width), width, text, length);
}

// The next `width` characters of the input record, blank-padded past its end. Numeric fields
// ignore the padding; a text field of `keep` characters needs at most that many of it.
std::string_view Statement::field(std::size_t width, std::size_t keep)
{
    const std::size_t start = std::min(inPos_, inRecord_.size());
    const std::size_t available = inRecord_.size() - start;
    inPos_ = width > std::numeric_limits<std::size_t>::max() - inPos_ ? inPos_ : inPos_ + width;
    if (available >= width) return inRecord_.substr(start, width);
    workspace.padded.assign(inRecord_.data() + start, available);
    workspace.padded.append(std::min(width - available, keep), ' ');
    return workspace.padded;
}

void Statement::get(const FormatToken& edit, const Item& item)
{
    void* v = const_cast<void*>(item.value);
    if (edit.kind == EditKind::Q) {
        const std::int64_t left =
            inPos_ < inRecord_.size() ? static_cast<std::int64_t>(inRecord_.size() - inPos_) : 0;
        if (item.type == ItemType::int32)
            *static_cast<std::int32_t*>(v) = static_cast<std::int32_t>(left);
        else if (item.type == ItemType::int64)
            *static_cast<std::int64_t*>(v) = left;
        else
            fail(code::typeMismatch);
        return;
    }
    switch (item.type) {
    case ItemType::int32:
    case ItemType::int64: {
        if (edit.kind != EditKind::I && edit.kind != EditKind::B && edit.kind != EditKind::O &&
            edit.kind != EditKind::Z && edit.kind != EditKind::G)
            return fail(code::typeMismatch);
        std::int64_t value = 0;
        if (const int error =
                readIntegerField(field(static_cast<std::size_t>(edit.width)), edit, modes_, value))
            return fail(error);
        if (item.type == ItemType::int32) {
            if (value < std::numeric_limits<std::int32_t>::min() ||
                value > std::numeric_limits<std::int32_t>::max())
                return fail(code::badNumericInput);
            *static_cast<std::int32_t*>(v) = static_cast<std::int32_t>(value);
        } else {
            *static_cast<std::int64_t*>(v) = value;
        }
        return;
    }
    case ItemType::real32:
    case ItemType::real64: {
        switch (edit.kind) {
        case EditKind::F:
        case EditKind::E:
        case EditKind::ES:
        case EditKind::EN:
        case EditKind::D:
        case EditKind::G:
            break;
        default:
            return fail(code::typeMismatch);
        }
        const bool single = item.type == ItemType::real32;
        double value = 0;
        if (const int error =
                readRealField(field(static_cast<std::size_t>(edit.width)), edit, modes_, single, value))
            return fail(error);
        if (single)
            *static_cast<float*>(v) = static_cast<float>(value);
        else
            *static_cast<double*>(v) = value;
        return;
    }
    case ItemType::logical: {
        if (edit.kind != EditKind::L && edit.kind != EditKind::G) return fail(code::typeMismatch);
        bool value = false;
        const std::size_t width = edit.hasWidth ? static_cast<std::size_t>(edit.width) : 2;
        if (const int error = readLogicalField(field(width), value)) return fail(error);
        *static_cast<bool*>(v) = value;
        return;
    }
    case ItemType::text: {
        if (edit.kind != EditKind::A && edit.kind != EditKind::G) return fail(code::typeMismatch);
        FormatToken a = edit;
        if (edit.kind == EditKind::G) a.hasWidth = edit.width > 0;
        const std::size_t width = a.hasWidth ? static_cast<std::size_t>(a.width) : item.length;
        readTextField(field(width, item.length), a, TextRef(static_cast<char*>(v), item.length));
        return;
    }
    case ItemType::constText:
        return fail(code::badIolist);
    }
}

} // namespace kestro::rt
