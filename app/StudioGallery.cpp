#include "app/Studio.h"

#include "gallery/CreationCodec.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "profile/NameRules.h"
#include "profile/PreferencesStore.h"

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
    if (title.isEmpty())
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

    // The stored list is read again inside the write, so a creation another window saved in
    // the meantime is kept. When it is still the list this window knows, the new creation is
    // put in front of its bytes; otherwise the two lists are merged by id.
    QByteArray written;
    QList<Creation> saved;
    const bool stored = m_defaults.update(creationsKey, [&](const QVariant &value) -> std::optional<QVariant> {
        const std::optional<QByteArray> bytes = PreferencesStore::asData(value);
        if (!m_creations.isKnown())
            m_creations.setStored(bytes);
        const bool unchanged = sameBytes(bytes, m_creations.bytes());
        std::optional<QList<Creation>> theirs;
        if (!unchanged)
            theirs = bytes ? decodeCreations(*bytes) : QList<Creation>();
        else if (m_creations.isReadable())
            theirs = m_creations.creations();
        // An unreadable list is kept beside the store before the write replaces it.
        if (!theirs && !m_defaults.keepUnreadable(creationsKey, *bytes))
            return std::nullopt;
        saved = mergeCreations(creation, theirs.value_or(QList<Creation>()), m_creations.creations());
        written = unchanged && theirs ? prependCreation(creation, bytes.value_or(QByteArray("[]")))
                                      : encodeCreations(saved);
        return written;
    });
    if (!stored || written.isEmpty()) {
        setMessage(QStringLiteral("I couldn't save this drawing. Please try again."));
        return;
    }
    m_creations.setWritten(written, saved);
    emit creationsChanged();
    setSaving(false);
    setMessage(QStringLiteral("‘") + creation.title + QStringLiteral("’ is safe in your gallery."));
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
