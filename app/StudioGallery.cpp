#include "app/Studio.h"

#include "gallery/CreationCodec.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "profile/NameRules.h"
#include "profile/PreferencesStore.h"

#include <memory>

namespace {

const QString creationsKey = QStringLiteral("creations");

// Equal stored values; the same bytes shared with the store cost no comparison.
bool sameBytes(const std::optional<QByteArray> &a, const std::optional<QByteArray> &b)
{
    if (!a || !b)
        return !a && !b;
    return (a->constData() == b->constData() && a->size() == b->size()) || *a == *b;
}

} // namespace

const QList<Creation> &Studio::creations() const
{
    if (!m_creations.isKnown())
        m_creations.setStored(m_defaults.data(creationsKey));
    return m_creations.creations();
}

void Studio::decodeCreationsAhead()
{
    if (!m_creations.isKnown())
        m_creations.setStored(m_defaults.data(creationsKey));
    m_creations.decodeAhead();
}

void Studio::saveCreation()
{
    const QString title = m_creationTitle.trimmed();
    // One save at a time: the sheet's button waits for the first, Return in its field does not.
    if (title.isEmpty() || m_storingCreation)
        return;
    if (m_running || m_drawingSource.isEmpty() || m_drawingSource != m_code) {
        setSaving(false);
        setMessage(QStringLiteral("Run your latest code all the way through before saving."));
        return;
    }
    Creation creation;
    creation.title = leftCharacters(title, Creation::maxTitleLength);
    creation.code = m_code;
    creation.turtle = m_turtle;
    creation.theme = m_theme;
    creation.strokes = m_drawing.strokes;

    // The list is written apart, so the window goes on while the disk takes it; what is
    // written is settled there and handed back.
    struct Written
    {
        QByteArray bytes;
        QList<Creation> creations;
    };
    const auto written = std::make_shared<Written>();
    PreferencesStore &store = m_defaults;
    // The stored list is read again inside the write, so a creation another window saved in
    // the meantime is kept. When it is still the list this window knows, the new creation is
    // put in front of its bytes; otherwise the two lists are merged by id.
    auto change = [creation, known = m_creations, written, &store](const QVariant &value) mutable -> std::optional<QVariant> {
        const std::optional<QByteArray> bytes = PreferencesStore::asData(value);
        if (!known.isKnown())
            known.setStored(bytes);
        const bool unchanged = sameBytes(bytes, known.bytes());
        std::optional<QList<Creation>> theirs;
        if (!unchanged)
            theirs = bytes ? decodeCreations(*bytes) : QList<Creation>();
        else if (known.isReadable())
            theirs = known.creations();
        // An unreadable list is kept beside the store before the write replaces it.
        if (!theirs && !store.keepUnreadable(creationsKey, *bytes))
            return std::nullopt;
        written->creations = mergeCreations(creation, theirs.value_or(QList<Creation>()), known.creations());
        written->bytes = unchanged && theirs ? prependCreation(creation, bytes.value_or(QByteArray("[]")))
                                             : encodeCreations(written->creations);
        return written->bytes;
    };
    setStoringCreation(true);
    m_defaults.updateInBackground(creationsKey, std::move(change), [this, written, title = creation.title](bool stored) {
        setStoringCreation(false);
        if (!stored || written->bytes.isEmpty()) {
            setMessage(QStringLiteral("I couldn't save this drawing. Please try again."));
            return;
        }
        m_creations.setWritten(written->bytes, written->creations);
        emit creationsChanged();
        setSaving(false);
        setMessage(QStringLiteral("‘") + title + QStringLiteral("’ is safe in your gallery."));
    });
}

void Studio::finishSaving()
{
    m_defaults.finishBackgroundUpdates();
}

void Studio::setStoringCreation(bool storing)
{
    if (m_storingCreation == storing)
        return;
    m_storingCreation = storing;
    emit storingCreationChanged();
}

void Studio::openCreation(const Creation &creation)
{
    if (creation.code.size() > maxCodeLength) {
        setGallery(false);
        setMessage(QStringLiteral("‘") + creation.shownTitle()
                   + QStringLiteral("’ is too big to open in the editor. Try another creation."));
        return;
    }
    enterFree();
    setCode(creation.code);
    setTurtle(creation.turtle);
    setTheme(creation.theme);
    setPlannedStrokes(creation.strokes);
    setDrawingSource(m_code);
    resetDrawing();
    try {
        LogoParser parser(m_code);
        for (const Instruction &instruction : parser.parse())
            apply(instruction);
    } catch (const LogoError &) {
        // A program that no longer parses opens on an empty canvas, ready to be fixed.
    }
    setGallery(false);
    setMessage(QStringLiteral("Opened ‘") + creation.shownTitle() + QStringLiteral("’. Remix it and save a new copy."));
}
