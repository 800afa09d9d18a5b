#pragma once

#include "turtle/Stroke.h"
#include "canvas/SurfacePainter.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QTransform>
#include <QtQml/qqmlregistration.h>

// The view of a turtle drawing: a passive item that repaints whenever one of its inputs changes,
// painting only the strokes that are new since its last frame.
class DrawingSurface : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<Stroke> strokes READ strokes WRITE setStrokes NOTIFY strokesChanged)
    Q_PROPERTY(QList<Stroke> ghost READ ghost WRITE setGhost NOTIFY ghostChanged)
    Q_PROPERTY(QList<Stroke> bounds READ bounds WRITE setBounds NOTIFY boundsChanged)
    // The turtle's position counts only while hasPoint is true; false hides the turtle.
    Q_PROPERTY(QPointF point READ point WRITE setPoint NOTIFY pointChanged)
    Q_PROPERTY(bool hasPoint READ hasPoint WRITE setHasPoint NOTIFY hasPointChanged)
    // A null image hides the turtle.
    Q_PROPERTY(QImage turtle READ turtle WRITE setTurtle NOTIFY turtleChanged)
    Q_PROPERTY(double heading READ heading WRITE setHeading NOTIFY headingChanged)
    Q_PROPERTY(QColor background READ background WRITE setBackground NOTIFY backgroundChanged)
    Q_PROPERTY(bool grid READ grid WRITE setGrid NOTIFY gridChanged)

public:
    explicit DrawingSurface(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

    // What paint() draws, as one value.
    SurfaceInputs inputs() const;

    const QList<Stroke> &strokes() const { return m_inputs.strokes; }
    const QList<Stroke> &ghost() const { return m_inputs.ghost; }
    const QList<Stroke> &bounds() const { return m_inputs.bounds; }
    QPointF point() const { return m_point; }
    bool hasPoint() const { return m_hasPoint; }
    const QImage &turtle() const { return m_inputs.turtle; }
    double heading() const { return m_inputs.heading; }
    QColor background() const { return m_inputs.background; }
    bool grid() const { return m_inputs.grid; }

    void setStrokes(const QList<Stroke> &strokes);
    void setGhost(const QList<Stroke> &ghost);
    void setBounds(const QList<Stroke> &bounds);
    void setPoint(QPointF point);
    void setHasPoint(bool hasPoint);
    void setTurtle(const QImage &turtle);
    void setHeading(double heading);
    void setBackground(const QColor &background);
    void setGrid(bool grid);

signals:
    void strokesChanged();
    void ghostChanged();
    void boundsChanged();
    void pointChanged();
    void hasPointChanged();
    void turtleChanged();
    void headingChanged();
    void backgroundChanged();
    void gridChanged();

private:
    // What the kept layer was painted for; any difference paints it afresh.
    struct LayerKey
    {
        QSize pixels;
        qreal pixelRatio = 0;
        QTransform transform;
        QSizeF size;
        SurfaceFit fit;
        QColor background;
        bool grid = false;
        QList<Stroke> ghost;

        bool operator==(const LayerKey &) const = default;
    };

    // Every input but the point, which is kept apart so it survives being hidden.
    SurfaceInputs m_inputs;
    QPointF m_point;
    bool m_hasPoint = false;
    // The backdrop and the strokes `m_layered`, at the painter's own pixels.
    QImage m_layer;
    LayerKey m_layerKey;
    QList<Stroke> m_layered;
};
