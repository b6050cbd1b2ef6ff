#pragma once

#include <QDialog>

class MaterialDescribeEngine;
class QDialogButtonBox;
class QLineEdit;
class QSortFilterProxyModel;
class QTreeView;

// Picks one material from the tree of a catalogue. Only a material, never a folder,
// can be taken.
class MaterialSelectDialog : public QDialog
{
    Q_OBJECT
public:
    void setCatalogue(MaterialDescribeEngine *catalogue);
    void setCurrentMaterial(const QString &name);
    // The name of the current row; empty for a folder, no row or "Not assigned".
    QString selectedMaterial() const;

    QLineEdit *findEdit() const { return m_editFind; }

protected:
    MaterialSelectDialog(const QString &title, MaterialDescribeEngine &catalogue, const QString &currentName,
                         QWidget *parent);

private:
    void currentChanged(const QModelIndex &current);
    void activated(const QModelIndex &index);
    bool isMaterial(const QModelIndex &index) const;

    QLineEdit *m_editFind;
    QTreeView *m_treeView;
    QDialogButtonBox *m_buttonBox;
    QSortFilterProxyModel *m_proxy;
};

class MaterialConductorSelectDialog : public MaterialSelectDialog
{
    Q_OBJECT
public:
    explicit MaterialConductorSelectDialog(const QString &currentName, QWidget *parent = nullptr);
};

class MaterialIronSelectDialog : public MaterialSelectDialog
{
    Q_OBJECT
public:
    explicit MaterialIronSelectDialog(const QString &currentName, QWidget *parent = nullptr);
};

class MaterialMagnetSelectDialog : public MaterialSelectDialog
{
    Q_OBJECT
public:
    explicit MaterialMagnetSelectDialog(const QString &currentName, QWidget *parent = nullptr);
};
