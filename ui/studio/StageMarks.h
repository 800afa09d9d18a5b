#pragma once

#include "turtle/Stroke.h"

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// A transparent layer over the stage's drawing surface, fitted the same way from the same
// bounds and ghost: strokes picked out from the code, and what differs from the mission.
class StageMarks : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<Stroke> strokes READ strokes WRITE setStrokes NOTIFY marksChanged)
    Q_PROPERTY(QList<Stroke> bounds READ bounds WRITE setBounds NOTIFY marksChanged)
    Q_PROPERTY(QList<Stroke> ghost READ ghost WRITE setGhost NOTIFY marksChanged)
    // Indices into strokes: those the command at the cursor drew, and one clicked just now.
    Q_PROPERTY(QList<int> emphasis READ emphasis WRITE setEmphasis NOTIFY marksChanged)
    Q_PROPERTY(int flash READ flash WRITE setFlash NOTIFY marksChanged)
    Q_PROPERTY(QList<Stroke> missing READ missing WRITE setMissing NOTIFY marksChanged)
    Q_PROPERTY(QList<Stroke> extra READ extra WRITE setExtra NOTIFY marksChanged)
    Q_PROPERTY(QColor emphasisColor MEMBER m_emphasisColor NOTIFY marksChanged)
    Q_PROPERTY(QColor missingColor MEMBER m_missingColor NOTIFY marksChanged)
    Q_PROPERTY(QColor extraColor MEMBER m_extraColor NOTIFY marksChanged)

public:
    explicit StageMarks(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

    // The stroke a click at (x, y) on the stage means, or -1.
    Q_INVOKABLE int strokeAt(qreal x, qreal y) const;

    const QList<Stroke> &strokes() const { return m_strokes; }
    const QList<Stroke> &bounds() const { return m_bounds; }
    const QList<Stroke> &ghost() const { return m_ghost; }
    const QList<int> &emphasis() const { return m_emphasis; }
    int flash() const { return m_flash; }
    const QList<Stroke> &missing() const { return m_missing; }
    const QList<Stroke> &extra() const { return m_extra; }
    void setStrokes(const QList<Stroke> &strokes);
    void setBounds(const QList<Stroke> &bounds);
    void setGhost(const QList<Stroke> &ghost);
    void setEmphasis(const QList<int> &emphasis);
    void setFlash(int flash);
    void setMissing(const QList<Stroke> &missing);
    void setExtra(const QList<Stroke> &extra);

signals:
    void marksChanged();

private:
    template<typename T>
    void assign(T &field, const T &value);

    QList<Stroke> m_strokes;
    QList<Stroke> m_bounds;
    QList<Stroke> m_ghost;
    QList<int> m_emphasis;
    int m_flash = -1;
    QList<Stroke> m_missing;
    QList<Stroke> m_extra;
    QColor m_emphasisColor = Qt::yellow;
    QColor m_missingColor = Qt::blue;
    QColor m_extraColor = Qt::red;
};
