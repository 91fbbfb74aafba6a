#include "platform/linux/x11/selection_reader.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "common/text_limit.h"
#include "platform/linux/selection/clipboard_formats.h"

namespace tralio {
namespace {

constexpr qsizetype mostTargetBytes = 64 << 10;

using Targets = std::vector<xcb_atom_t>;

/// Receives the content piece by piece.
using Sink = std::function<void(const QByteArray&)>;

template <typename Event>
const Event* eventAs(const xcb_generic_event_t& event, quint8 type) {
    return (event.response_type & 0x7f) == type ? &reinterpret_cast<const Event&>(event) : nullptr;
}

/// The conversions of one reading. It has a window and a property of its own, so that a late answer to an
/// earlier reading is never taken for an answer to this one.
class Conversion {
public:
    Conversion(X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline)
        : m_connection(connection),
          m_selection(selection),
          m_deadline(deadline),
          m_window(xcb_generate_id(connection.xcb())),
          m_property(connection.atom("TRALIO_SELECTION")) {
        const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection.xcb(), XCB_COPY_FROM_PARENT, m_window, m_connection.root(), -10, -10,
            1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;
    ~Conversion() {
        // WORKAROUND: mutter 48 crashes when it answers to a window that is gone. While an answer may still
        // come, the window stays.
        if (m_unanswered == 0)
            xcb_destroy_window(m_connection.xcb(), m_window);
        xcb_flush(m_connection.xcb());
    }

    /// The list of targets that the owner offers; absent if it does not support the question.
    std::optional<Targets> targets() {
        const auto bytes = convert(m_connection.atom("TARGETS"), mostTargetBytes);
        if (!bytes)
            return std::nullopt;
        Targets targets(static_cast<size_t>(bytes->size()) / sizeof(xcb_atom_t));
        std::memcpy(targets.data(), bytes->constData(), targets.size() * sizeof(xcb_atom_t));
        return targets;
    }

    void setDeadline(QDeadlineTimer deadline) { m_deadline = deadline; }

    /// Of a content with more than `most` bytes only the beginning is read, up to a few bytes more than that.
    std::optional<QByteArray> convert(xcb_atom_t target, qsizetype most) {
        QByteArray all;
        const bool isWhole = convert(target, most, [&all](const QByteArray& piece) { all += piece; });
        return isWhole ? std::optional(all) : std::nullopt;
    }

    /// False if there is no such content, or it has not arrived completely.
    bool convert(xcb_atom_t target, qsizetype most, const Sink& sink) {
        if (m_deadline.hasExpired())
            return false;
        ++m_unanswered;
        xcb_convert_selection(
            m_connection.xcb(), m_window, m_selection, target, m_property, XCB_CURRENT_TIME);
        const auto answer = m_connection.waitFor(
            [&](const xcb_generic_event_t& event) {
                const auto* notify = eventAs<xcb_selection_notify_event_t>(event, XCB_SELECTION_NOTIFY);
                if (!notify || notify->requestor != m_window)
                    return false;
                --m_unanswered;
                // An owner that was too slow for the previous question may answer that one first.
                return notify->target == target;
            },
            m_deadline);
        if (!answer ||
            reinterpret_cast<const xcb_selection_notify_event_t&>(*answer).property == XCB_ATOM_NONE)
            return false;

        const Piece first = takePiece(most);
        if (first.incremental)
            return collectPieces(most, sink);
        sink(first.bytes);
        return true;
    }

private:
    struct Piece {
        bool incremental = false;
        QByteArray bytes;
    };

    /// Reads and deletes the property; deleting it asks the owner for the next piece of a long text.
    Piece takePiece(qsizetype most) {
        const XcbPtr<xcb_get_property_reply_t> reply{xcb_get_property_reply(m_connection.xcb(),
            xcb_get_property(m_connection.xcb(), 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                quint32(most / 4 + 1)),
            nullptr)};
        if (!reply)
            return {};
        return {reply->type == m_connection.atom("INCR"),
            QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get()))};
    }

    bool collectPieces(qsizetype most, const Sink& sink) {
        for (qsizetype size = 0; size <= most;) {
            const auto arrived = m_connection.waitFor(
                [&](const xcb_generic_event_t& event) {
                    const auto* notify = eventAs<xcb_property_notify_event_t>(event, XCB_PROPERTY_NOTIFY);
                    return notify && notify->window == m_window && notify->atom == m_property &&
                        notify->state == XCB_PROPERTY_NEW_VALUE;
                },
                m_deadline);
            if (!arrived)
                return false;
            const Piece piece = takePiece(most - size);
            if (piece.bytes.isEmpty())
                return true;
            sink(piece.bytes);
            size += piece.bytes.size();
        }
        return true;
    }

    X11Connection& m_connection;
    xcb_atom_t m_selection;
    QDeadlineTimer m_deadline;
    xcb_window_t m_window;
    xcb_atom_t m_property;
    int m_unanswered = 0;
};

bool contains(const Targets& targets, xcb_atom_t target) {
    return std::ranges::find(targets, target) != targets.end();
}

bool isPicture(X11Connection& connection, xcb_get_atom_name_cookie_t asked) {
    const XcbPtr<xcb_get_atom_name_reply_t> reply{xcb_get_atom_name_reply(connection.xcb(), asked, nullptr)};
    return reply &&
        QByteArrayView(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()))
            .startsWith("image/");
}

/// Those of the targets that are formats of pictures, best first.
Targets picturesAmong(const Targets& targets, X11Connection& connection) {
    Targets pictures;
    for (const char* format : pictureFormats)
        if (const xcb_atom_t target = connection.atom(format); contains(targets, target))
            pictures.push_back(target);
    if (!pictures.empty())
        return pictures;
    // The recogniser finds out whether it can decode another format.
    std::vector<xcb_get_atom_name_cookie_t> asked;
    asked.reserve(targets.size());
    for (const xcb_atom_t target : targets)
        asked.push_back(xcb_get_atom_name(connection.xcb(), target));
    for (size_t i = 0; i < targets.size(); ++i)
        if (isPicture(connection, asked[i]))
            pictures.push_back(targets[i]);
    return pictures;
}

}  // namespace

std::optional<QString> readSelectionText(
    X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline) {
    Conversion conversion(connection, selection, deadline);
    // Asked for a text that they do not have, some owners refuse and others send an empty one: ask for the
    // targets first. An owner that does not support that question may still have text.
    const auto targets = conversion.targets();
    const auto offers = [&](xcb_atom_t target) { return !targets || contains(*targets, target); };
    for (const TextFormat& format : textFormats) {
        const xcb_atom_t target = connection.atom(format.name);
        if (!offers(target))
            continue;
        if (const auto bytes = conversion.convert(target, longestTextBytes))
            return decodeText(*bytes, format.encoding);
    }
    return std::nullopt;
}

Picture readSelectionPicture(X11Connection& connection, xcb_atom_t selection, QDeadlineTimer deadline,
    QDeadlineTimer pictureDeadline) {
    Conversion conversion(connection, selection, deadline);
    const auto targets = conversion.targets();
    if (!targets)
        return nullptr;
    conversion.setDeadline(pictureDeadline);
    for (const xcb_atom_t target : picturesAmong(*targets, connection)) {
        const auto picture = std::make_shared<MemoryFile>();
        if (conversion.convert(
                target, largestPicture, [&](const QByteArray& piece) { picture->append(piece); }))
            return picture;
    }
    return nullptr;
}

std::optional<bool> selectionOffers(
    X11Connection& connection, xcb_atom_t selection, const char* target, QDeadlineTimer deadline) {
    const auto targets = Conversion(connection, selection, deadline).targets();
    if (!targets && deadline.hasExpired())
        return std::nullopt;
    return targets && contains(*targets, connection.atom(target));
}

}  // namespace tralio
