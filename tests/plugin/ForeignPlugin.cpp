#include <QObject>

// A Qt plug-in of another kind under the solver's file name: it loads, but offers
// no solver.
class ForeignPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.zolvane.Foreign")
};

#include "ForeignPlugin.moc"
