// Draws the bundled example's torque and phase back-EMF over one electrical period, as
// our solver computes them, into a PNG for the README:
//   zds_solver_plot OUT.png WORKFOLDER

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "AssembledExample.h"
#include "solver/MCRCtrl/MatData.h"
#include "solver/MCRCtrl/SolverSteps.h"

using namespace mcrctrl;

namespace {

matvar_t *settings()
{
    return mat::structure(QStringLiteral("settingsMagnetostatic"),
                          {{QStringLiteral("MS_solvertype"), mat::text(QString(), QStringLiteral("Nonlinear"))},
                           {QStringLiteral("MS_tol"), mat::number(QString(), 1e-4)},
                           {QStringLiteral("MS_npoints"), mat::number(QString(), 120)},
                           {QStringLiteral("MS_speed"), mat::number(QString(), 1000.0)},
                           {QStringLiteral("MS_gamma"), mat::number(QString(), 0.0)},
                           {QStringLiteral("MS_currentinputmethod"), mat::text(QString(), QStringLiteral("RMS phase current"))},
                           {QStringLiteral("MS_I"), mat::number(QString(), 10.0)},
                           {QStringLiteral("MS_timeselection"), mat::text(QString(), QStringLiteral("One electrical period"))}});
}

// One panel: the curves over time in milliseconds, with their range on the axis.
void drawPanel(QPainter &painter, const QRect &area, const QString &title, const std::vector<double> &time,
               const std::vector<std::pair<std::vector<double>, QColor>> &curves)
{
    double low = 0.0;
    double high = 0.0;
    for (const auto &curve : curves) {
        low = std::min(low, *std::min_element(curve.first.begin(), curve.first.end()));
        high = std::max(high, *std::max_element(curve.first.begin(), curve.first.end()));
    }
    const double margin = 0.1 * (high - low);
    low -= margin;
    high += margin;
    const QRect plot = area.adjusted(70, 30, -20, -40);
    painter.setPen(Qt::black);
    painter.drawText(area.adjusted(0, 4, 0, 0), Qt::AlignHCenter | Qt::AlignTop, title);
    painter.drawRect(plot);
    const double end = time.back() + (time.back() - time.front()) / double(time.size() - 1);
    const auto at = [&](double t, double v) {
        return QPointF(plot.left() + plot.width() * t / end, plot.bottom() - plot.height() * (v - low) / (high - low));
    };
    painter.setPen(QPen(Qt::gray, 1, Qt::DashLine));
    painter.drawLine(at(0.0, 0.0), at(end, 0.0));
    painter.setPen(Qt::black);
    for (int k = 0; k <= 4; ++k) {
        const double raw = low + (high - low) * k / 4.0;
        const double v = std::abs(raw) < 1e-3 * (high - low) ? 0.0 : raw;
        painter.drawText(QRectF(area.left(), at(0.0, v).y() - 8, 64, 16), Qt::AlignRight | Qt::AlignVCenter, QString::number(v, 'g', 3));
        const double t = end * k / 4.0;
        painter.drawText(QRectF(at(t, low).x() - 30, plot.bottom() + 4, 60, 16), Qt::AlignCenter, QString::number(t * 1000.0, 'g', 3));
    }
    painter.drawText(QRect(plot.left(), plot.bottom() + 20, plot.width(), 16), Qt::AlignCenter, QStringLiteral("time, ms"));
    for (const auto &[values, color] : curves) {
        painter.setPen(QPen(color, 2));
        for (std::size_t k = 0; k + 1 < values.size(); ++k)
            painter.drawLine(at(time[k], values[k]), at(time[k + 1], values[k + 1]));
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: zds_solver_plot OUT.png WORKFOLDER\n");
        return 2;
    }
    const QString folder = QDir(QString::fromLocal8Bit(argv[2])).absolutePath();
    try {
        const SolverSteps steps = exampleSolverSteps();
        const QString exchange = assembledExample(steps, folder);
        if (exchange.isEmpty())
            return 1;
        {
            const MatReader assembled(exchange);
            std::vector<matvar_t *> variables{settings()};
            for (const char *name : {"Geometry", "Mesh", "Windings", "RadMesh", "Materials", "SubdomainProperty"})
                variables.push_back(mat::renamed(assembled.raw(QString::fromLatin1(name)), QString::fromLatin1(name)));
            writeMatFile(exchange, variables);
        }
        if (!steps.timestep(exchange))
            return 1;
        const MatValue data = MatReader(exchange).value(QStringLiteral("Timesteppingdata"));
        const auto series = [&](const char *name) { return data.field(QString::fromLatin1(name), QStringLiteral("Timesteppingdata")).numbers; };
        QImage image(900, 640, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        drawPanel(painter, QRect(0, 0, 900, 320), QStringLiteral("Torque, N m: by Maxwell stress (blue), from flux linkage and current (green)"),
                  series("time"), {{series("Torque_maxwell"), Qt::blue}, {series("Torque_fluxlinkage"), Qt::darkGreen}});
        drawPanel(painter, QRect(0, 320, 900, 320), QStringLiteral("Induced phase voltages A, B, C at 10 A and 1000 rpm, V"), series("time"),
                  {{series("BackEMFa"), Qt::red}, {series("BackEMFb"), Qt::darkYellow}, {series("BackEMFc"), Qt::blue}});
        painter.end();
        if (!image.save(QString::fromLocal8Bit(argv[1])))
            throw StepError(QStringLiteral("Can't write %1").arg(QString::fromLocal8Bit(argv[1])));
    } catch (const StepError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.text()));
        return 1;
    }
    return 0;
}
