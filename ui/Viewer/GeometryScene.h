#pragma once

#include <QFutureWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <AIS_InteractiveObject.hxx>

#include "geometry/Piece.h"
#include "ui/Viewer/SectionGuides.h"

class Document;

// The 3D content of a view: one interactive object per piece, coloured by its
// material. The pieces are built on a worker; the objects are made and shown on
// the GUI thread. One generation runs at a time; a change that arrives meanwhile
// is picked up when it ends.
class GeometryScene : public QObject
{
    Q_OBJECT
public:
    GeometryScene(Document *document, const QString &name, QObject *parent = nullptr);
    ~GeometryScene() override;

    Document *document() const { return m_document; }
    const PieceList &pieces() const { return m_pieces; }
    const QVector<Handle(AIS_InteractiveObject)> &objects() const { return m_objects; }
    // The piece an object of this scene shows; an empty piece for any other object.
    Piece pieceOf(const Handle(AIS_InteractiveObject) &object) const;

    void setPieces(const PieceList &pieces);
    void setPieces(const PieceList &pieces, const double &transparency);
    bool exportToSTEP(const QString &path);

    bool isGenerating() const { return m_generating; }
    // Until the scene is first shown, changes build nothing.
    void setShown(bool shown);

    // Whether a change is drawn as soon as it arrives. Otherwise, once a machine is
    // drawn, a change only makes the scene out of date until applyChanges().
    bool applyRightAway() const { return m_applyRightAway; }
    void setApplyRightAway(bool rightAway);
    bool isOutOfDate() const { return m_outOfDate; }

    // What is shown, kept per scene under its name.
    Piece::Scopes visibleScopes() const { return m_visibleScopes; }
    void setVisibleScopes(Piece::Scopes scopes);
    // The setting that shows or hides pieces of that body and material kind; empty
    // for pieces that are always shown.
    static QString visibilityKey(Piece::Scope scope, qint32 kind);
    void setMaterialVisible(const QString &key, bool visible);
    bool isMaterialVisible(const QString &key) const { return m_visibleMaterials.value(key, true); }
    bool isPieceVisible(const Piece &piece) const;
    // The borders of the analysis slices, as cylinders over the pieces.
    bool showSlicePlanes() const { return m_showSlicePlanes; }
    void setShowSlicePlanes(bool show);
    virtual void loadSettings();
    virtual void saveSettings() const;

signals:
    void selectionChanged(Piece piece);
    void showSlicePlanesChanged(bool show);
    void visibleScopesChanged(Piece::Scopes &scopes);
    void visibleMaterialChanged();
    void progressCreateScene(QString text);
    void redrawScene();
    void outOfDateChanged(bool outOfDate);

public slots:
    void applyChanges();
    // Applies the changes once control returns to the event loop, so that a burst
    // of changes makes one generation; or marks the scene out of date, when changes
    // wait for the user.
    void scheduleChanges();

protected:
    // The pieces to show; runs on a worker.
    virtual PieceList buildPieces() = 0;
    // Runs on the GUI thread on the finished pieces.
    virtual void createScene(const PieceList &pieces);
    // The colour a piece is drawn in: its material's.
    virtual QColor colorOf(const Piece &piece) const;
    // What is drawn over the pieces, reaching over their axial extent.
    virtual QVector<Handle(AIS_InteractiveObject)> guides(const SectionGuides::AxialExtent &extent) const;
    void requestPieces();

private:
    void generationFinished();
    void setOutOfDate(bool outOfDate);
    Handle(AIS_InteractiveObject) objectOf(const Piece &piece, double transparency) const;

    Document *m_document;
    QString m_name;
    PieceList m_pieces;
    QVector<Handle(AIS_InteractiveObject)> m_objects;
    QFutureWatcher<PieceList> m_watcher;
    QTimer m_changeTimer;
    bool m_shown = false;
    bool m_generating = false;
    bool m_changedMeanwhile = false;
    bool m_applyRightAway = true;
    bool m_drawn = false;
    bool m_outOfDate = false;
    bool m_showSlicePlanes = false;
    Piece::Scopes m_visibleScopes = Piece::StatorMask | Piece::RotorMask;
    // By setting key ("VisibleStatorIron"); a missing key is shown.
    QHash<QString, bool> m_visibleMaterials;
};
