#include "viewer/PlotExport.h"

#include "viewer/PlotArea.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <utility>

namespace {

constexpr double MetersPerInch = 0.0254;
constexpr int PdfResolution = 300; ///< dots an inch
constexpr int PngScale = 2;
constexpr int MaxPixels = 16000; ///< of a picture's side

void paint(QPainter &painter, PlotArea &area, const QRectF &page, bool isWhole)
{
    painter.fillRect(page, area.palette().brush(QPalette::Window));
    painter.setFont(area.font());
    const double margin = painter.fontMetrics().averageCharWidth();
    area.render(painter, page.adjusted(margin, margin, -margin, -margin), isWhole);
}

} // namespace

PlotExport::PlotExport(QObject *parent)
    : QObject(parent)
    , m_thread(1)
{
}

PlotExport::~PlotExport()
{
    cancel();
}

void PlotExport::savePng(PlotArea &area, const QString &path, bool isWhole)
{
    QImage image((area.size() * PngScale).boundedTo({MaxPixels, MaxPixels}), QImage::Format_RGB32);
    image.setDotsPerMeterX(static_cast<int>(area.logicalDpiX() * PngScale / MetersPerInch));
    image.setDotsPerMeterY(static_cast<int>(area.logicalDpiY() * PngScale / MetersPerInch));
    QPainter painter(&image);
    paint(painter, area, image.rect(), isWhole);
    painter.end();
    save(path, [image](QIODevice &out, const std::atomic<bool> & /*stop*/, QString & /*error*/) {
        return image.save(&out, "PNG");
    });
}

void PlotExport::savePdf(PlotArea &area, const QString &path, bool isWhole)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(PdfResolution);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageOrientation(QPageLayout::Landscape);
        QPainter painter(&writer);
        const QRectF page(0, 0, writer.width(), writer.height());
        paint(painter, area, page, isWhole);
    }
    save(path, [pdf = buffer.data()](QIODevice &out, const std::atomic<bool> & /*stop*/, QString & /*error*/) {
        return out.write(pdf) == pdf.size();
    });
}

void PlotExport::saveCsv(std::vector<Curve> curves, const QString &path, const SeriesCsvSection &section)
{
    save(path, [curves = std::move(curves), section](QIODevice &out, const std::atomic<bool> &stop, QString &error) {
        std::vector<NamedSeries> columns;
        columns.reserve(curves.size());
        for (const Curve &curve : curves) {
            columns.push_back({curve.name, curve.series.get()});
        }
        const bool isWritten = writeSeriesCsv(out, columns, section, stop);
        error = stop ? tr("It was stopped.") : QString();
        return isWritten;
    });
}

void PlotExport::save(const QString &path, Writer writer)
{
    cancel();
    ++m_running;
    m_stop = std::make_shared<std::atomic<bool>>(false);
    m_thread.start([this, path, writer = std::move(writer), stop = m_stop] {
        QString error;
        QSaveFile file(path);
        const bool isWritten = file.open(QIODevice::WriteOnly) && writer(file, *stop, error) && file.commit();
        if (!isWritten && error.isEmpty()) {
            error = file.errorString();
        }
        m_calls.post([this, path, error] { finish(path, error); });
    });
}

void PlotExport::cancel()
{
    if (m_stop) {
        *m_stop = true;
    }
}

void PlotExport::finish(const QString &path, const QString &error)
{
    --m_running;
    emit sig_finished(path, error);
}
