#include "viewer/ComparisonWindow.h"

#include "viewer/ByteDelegate.h"
#include "viewer/CaptureTab.h"
#include "viewer/core/FilterRun.h"
#include "viewer/IdentifierNames.h"
#include "viewer/TableText.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int LookMs = 500;
constexpr int SeekMs = 50;
constexpr int SeekTries = 200;
constexpr int UsualPercent = 10;

} // namespace

ComparisonWindow::ComparisonWindow(QTabWidget &tabs, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_tabs(tabs)
    , m_run(m_calls.poster([this] { slot_hasResult(); }))
    , m_findThread(1)
{
    setObjectName(QStringLiteral("comparison"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Compare captures"));
    makeTable();
    m_state = new QLabel;
    m_state->setObjectName(QStringLiteral("state"));
    auto *sides = new QHBoxLayout;
    sides->addWidget(makeSide(m_sides[0], QStringLiteral("&A:"), "A"), 1);
    auto *swap = new QPushButton(tr("S&wap"));
    swap->setObjectName(QStringLiteral("swap"));
    connect(swap, &QPushButton::clicked, this, &ComparisonWindow::slot_swap);
    sides->addWidget(swap);
    sides->addWidget(makeSide(m_sides[1], QStringLiteral("&B:"), "B"), 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(sides);
    layout->addWidget(makeOptions());
    layout->addWidget(m_table, 1);
    layout->addWidget(makeLegend());
    layout->addWidget(makeButtons());
    connect(&m_timer, &QTimer::timeout, this, &ComparisonWindow::slot_look);
    m_timer.start(LookMs);
    const int letter = fontMetrics().averageCharWidth();
    resize(170 * letter, 80 * letter);
    fillCaptures();
}

ComparisonWindow::~ComparisonWindow()
{
    if (m_stopFinding) {
        *m_stopFinding = true;
    }
}

QWidget *ComparisonWindow::makeSide(Side &side, const QString &name, const char *objectName) const
{
    auto *line = new QWidget;
    line->setObjectName(QLatin1String(objectName));
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *label = new QLabel(name);
    side.capture = new QComboBox;
    side.capture->setObjectName(QStringLiteral("capture"));
    side.capture->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    side.capture->setMinimumContentsLength(14);
    label->setBuddy(side.capture);
    side.part = new QComboBox;
    side.part->setObjectName(QStringLiteral("part"));
    side.part->addItems(
        {tr("all frames"), tr("before the marked frame"), tr("from the marked frame on"), tr("from a time to a time")});
    side.from = new QLineEdit;
    side.from->setObjectName(QStringLiteral("from"));
    side.from->setPlaceholderText(tr("start"));
    side.to = new QLineEdit;
    side.to->setObjectName(QStringLiteral("to"));
    side.to->setPlaceholderText(tr("end"));
    layout->addWidget(label);
    layout->addWidget(side.capture, 1);
    layout->addWidget(side.part);
    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    for (QLineEdit *edit : {side.from, side.to}) {
        edit->setToolTip(tr("Seconds since the start (12.5, 300 ms), a clock time (13:45:06) or a frame's number"));
        edit->setMaximumWidth(edit->fontMetrics().averageCharWidth() * 16);
        edit->hide();
        layout->addWidget(edit);
        connect(edit, &QLineEdit::editingFinished, this, &ComparisonWindow::slot_look);
        connect(side.part, changed, edit, [edit](int part) { edit->setVisible(part == Range); });
    }
    connect(side.part, changed, this, &ComparisonWindow::slot_look);
    connect(side.capture, changed, this, &ComparisonWindow::slot_look);
    return line;
}

QWidget *ComparisonWindow::makeOptions()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_isOnlyDifferent = new QCheckBox(tr("Only what &differs"));
    m_isOnlyDifferent->setObjectName(QStringLiteral("onlyDifferent"));
    m_isOnlyDifferent->setChecked(true);
    m_tellsChannels = new QCheckBox(tr("&Tell channels apart"));
    m_tellsChannels->setObjectName(QStringLiteral("tellsChannels"));
    m_tellsChannels->setChecked(true);
    m_percent = new QSpinBox;
    m_percent->setObjectName(QStringLiteral("percent"));
    m_percent->setRange(0, 1000);
    m_percent->setValue(UsualPercent);
    m_percent->setSuffix(QStringLiteral(" %"));
    m_percent->setKeyboardTracking(false);
    auto *label = new QLabel(tr("&Rates and periods differ from:"));
    label->setBuddy(m_percent);
    layout->addWidget(m_isOnlyDifferent);
    layout->addWidget(m_tellsChannels);
    layout->addWidget(label);
    layout->addWidget(m_percent);
    layout->addStretch(1);
    layout->addWidget(m_state);
    connect(m_isOnlyDifferent, &QCheckBox::toggled, this,
            [this](bool isOn) { m_sorted.setFilterFixedString(isOn ? QStringLiteral("1") : QString()); });
    connect(m_tellsChannels, &QCheckBox::toggled, this, &ComparisonWindow::slot_look);
    connect(m_percent, QOverload<int>::of(&QSpinBox::valueChanged), this, &ComparisonWindow::slot_look);
    return line;
}

void ComparisonWindow::makeTable()
{
    m_sorted.setSourceModel(&m_model);
    m_sorted.setSortRole(ComparisonModel::SortRole);
    m_sorted.setFilterRole(ComparisonModel::DiffersRole);
    m_sorted.setFilterKeyColumn(0);
    m_sorted.setFilterFixedString(QStringLiteral("1"));
    m_table = new QTableView;
    m_table->setObjectName(QStringLiteral("identifiers"));
    m_table->setModel(&m_sorted);
    setUpIdentifierTable(*m_table);
    m_table->sortByColumn(ComparisonModel::Difference, Qt::DescendingOrder);
    auto *bytes = new ByteDelegate(m_table);
    m_table->setItemDelegateForColumn(ComparisonModel::BytesA, bytes);
    m_table->setItemDelegateForColumn(ComparisonModel::BytesB, bytes);
    const int digit = m_table->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (int column = 0; column < ComparisonModel::ColumnCount; ++column) {
        m_table->setColumnWidth(column, ComparisonModel::widthInCharacters(column) * digit);
    }
    connect(m_table, &QTableView::activated, this, &ComparisonWindow::slot_activated);
}

/// What the colours of bytes stand for.
QWidget *ComparisonWindow::makeLegend()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const auto &[mark, text] :
         {std::make_pair(ByteDelegate::Other, tr("bits that never change, but are not the same in A and B")),
          {ByteDelegate::Changed, tr("bits that never change in A, but do in B")},
          {ByteDelegate::MovesHere, tr("bits that never change in B, but do in A")}}) {
        const int side = line->fontMetrics().height();
        QPixmap patch(side, side);
        patch.fill(ByteDelegate::colorOf(mark));
        auto *color = new QLabel;
        color->setPixmap(patch);
        layout->addWidget(color);
        layout->addWidget(new QLabel(text));
    }
    layout->addStretch(1);
    return line;
}

QWidget *ComparisonWindow::makeButtons()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(
        new QLabel(
            tr("A double click shows the identifier in both captures, and in B the frame in which it is moved.")),
        1);
    auto *copy = new QPushButton(tr("&Copy all"));
    copy->setObjectName(QStringLiteral("copyAll"));
    auto *csv = new QPushButton(tr("Save CS&V..."));
    csv->setObjectName(QStringLiteral("saveCsv"));
    layout->addWidget(copy);
    layout->addWidget(csv);
    connect(copy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(tableText(*m_table, false, false)); });
    connect(csv, &QPushButton::clicked, this, [this] {
        saveAs(this, tr("Save CSV"), QStringLiteral("csv"),
               [this](const QString &path) { return saveText(path, tableText(*m_table, false, true)); });
    });
    return line;
}

/// Brings the lists of captures up to date; what was chosen stays as long as it is open.
void ComparisonWindow::fillCaptures()
{
    QVector<CaptureTab *> open;
    QStringList names;
    for (int i = 0; i < m_tabs.count(); ++i) {
        if (auto *tab = qobject_cast<CaptureTab *>(m_tabs.widget(i))) {
            open.append(tab);
            names.append(m_tabs.tabText(i));
        }
    }
    if (open == m_known && names == m_knownNames) {
        return;
    }
    for (std::size_t i = 0; i < m_sides.size(); ++i) {
        QComboBox &list = *m_sides[i].capture;
        CaptureTab *before = m_known.value(list.currentIndex());
        const QSignalBlocker blocker(list);
        list.clear();
        list.addItems(names);
        const int usual = std::min(static_cast<int>(i), open.size() - 1);
        list.setCurrentIndex(before != nullptr ? open.indexOf(before) : usual);
    }
    m_known.swap(open);
    m_knownNames = names;
}

void ComparisonWindow::choose(CaptureTab *a, Part partOfA, CaptureTab *b, Part partOfB)
{
    fillCaptures();
    m_sides[0].capture->setCurrentIndex(m_known.indexOf(a));
    m_sides[0].part->setCurrentIndex(partOfA);
    m_sides[1].capture->setCurrentIndex(m_known.indexOf(b));
    m_sides[1].part->setCurrentIndex(partOfB);
    slot_look();
}

CaptureTab *ComparisonWindow::tabOf(const Side &side) const
{
    CaptureTab *tab = m_known.value(side.capture->currentIndex());
    return tab != nullptr && m_tabs.indexOf(tab) >= 0 ? tab : nullptr;
}

QString ComparisonWindow::partOf(const Side &side, CapturePart &part) const
{
    CaptureTab *tab = tabOf(side);
    if (tab == nullptr) {
        return tr("Open the captures to compare, and choose them.");
    }
    const OpenCapture &capture = tab->capture();
    part.store = capture.sharedStore();
    const auto kind = static_cast<Part>(side.part->currentIndex());
    if ((kind == BeforeMark || kind == FromMark) && capture.mark() < 0) {
        return tr("No frame is marked in %1: select one and press Ctrl+M.").arg(side.capture->currentText());
    }
    const auto rowOf = [&capture](const QLineEdit &edit, qint64 otherwise) {
        return edit.text().trimmed().isEmpty() ? otherwise : rowOfText(edit.text(), capture.store(), capture.info());
    };
    switch (kind) {
    case All:
        break;
    case BeforeMark:
        part.end = capture.mark();
        break;
    case FromMark:
        part.first = capture.mark();
        break;
    case Range:
        part.first = rowOf(*side.from, 0);
        part.end = rowOf(*side.to, CapturePart::EndOfCapture);
        if (part.first < 0 || part.end < 0) {
            return tr("There is no frame “%1”.").arg(part.first < 0 ? side.from->text() : side.to->text());
        }
        break;
    }
    return {};
}

void ComparisonWindow::tell(const QString &problem)
{
    m_run.cancel();
    m_request = {};
    m_model.setComparison(nullptr);
    m_state->setText(problem);
}

void ComparisonWindow::slot_look()
{
    fillCaptures();
    Request request;
    request.tellsChannels = m_tellsChannels->isChecked();
    request.percent = m_percent->value();
    QString problem = partOf(m_sides[0], request.a);
    if (problem.isEmpty()) {
        problem = partOf(m_sides[1], request.b);
    }
    if (!problem.isEmpty()) {
        tell(problem);
        return;
    }
    if (request.a == m_request.a && request.b == m_request.b && request.tellsChannels == m_request.tellsChannels &&
        request.percent == m_request.percent) {
        m_run.extend();
        return;
    }
    m_request = request;
    m_table->setColumnHidden(ComparisonModel::Channel, !request.tellsChannels);
    QVector<SignalSource::Message> messages;
    for (const auto *side : {tabOf(m_sides[0]), tabOf(m_sides[1])}) {
        if (const auto &source = side->capture().signalSource()) {
            messages += source->messages();
        }
    }
    const FrameNames names(messages);
    m_table->setColumnHidden(ComparisonModel::Name, names.isEmpty());
    m_model.setNames(names);
    ComparisonThresholds thresholds;
    thresholds.rate = request.percent / 100.0;
    thresholds.period = thresholds.rate;
    m_state->setText(tr("comparing..."));
    m_run.start(std::make_unique<ComparisonWork>(request.a, request.b, request.tellsChannels, thresholds));
}

void ComparisonWindow::slot_hasResult()
{
    const auto comparison = m_run.result();
    if (!comparison) {
        return;
    }
    const QModelIndex before = m_table->currentIndex();
    const IdentifierDifference selected =
        before.isValid() ? m_model.at(m_sorted.mapToSource(before).row()).difference : IdentifierDifference();
    m_model.setComparison(comparison);
    if (before.isValid()) {
        select(selected);
    }
    const auto differing = std::count_if(comparison->identifiers.begin(), comparison->identifiers.end(),
                                         [](const ComparedIdentifier &one) { return one.difference.what != 0; });
    const QLocale locale;
    m_state->setText(tr("%1 of %2 identifiers differ; frames: A %3, B %4")
                         .arg(locale.toString(static_cast<qint64>(differing)),
                              locale.toString(static_cast<qint64>(comparison->identifiers.size())),
                              locale.toString(comparison->rowsHere), locale.toString(comparison->rowsThere)) +
                     (comparison->isComplete ? QString() : tr(", comparing...")));
    if (!m_table->currentIndex().isValid() && m_sorted.rowCount() > 0) {
        m_table->setCurrentIndex(m_sorted.index(0, ComparisonModel::Difference));
    }
}

/// Other identifiers may have come before it.
void ComparisonWindow::select(const IdentifierDifference &wanted)
{
    for (int row = 0; row < m_model.rowCount(); ++row) {
        const IdentifierDifference &difference = m_model.at(row).difference;
        if (difference.key == wanted.key && difference.channel == wanted.channel) {
            m_table->setCurrentIndex(m_sorted.mapFromSource(m_model.index(row, ComparisonModel::Difference)));
            return;
        }
    }
}

void ComparisonWindow::slot_swap()
{
    const auto exchange = [](QComboBox &a, QComboBox &b) {
        const QSignalBlocker blocker(a);
        const int index = a.currentIndex();
        a.setCurrentIndex(b.currentIndex());
        b.setCurrentIndex(index);
    };
    auto &[a, b] = m_sides;
    const QString from = a.from->text();
    const QString to = a.to->text();
    a.from->setText(b.from->text());
    a.to->setText(b.to->text());
    b.from->setText(from);
    b.to->setText(to);
    exchange(*a.capture, *b.capture);
    exchange(*a.part, *b.part);
    for (const Side &side : m_sides) {
        for (QLineEdit *edit : {side.from, side.to}) {
            edit->setVisible(side.part->currentIndex() == Range);
        }
    }
    slot_look();
}

void ComparisonWindow::showIn(CaptureTab &tab, const ComparedIdentifier &identifier) const
{
    const IdentifierDifference &difference = identifier.difference;
    tab.filterBy(m_request.tellsChannels ? identifierFilterOn(difference.key, difference.channel)
                                         : FrameColumns::identifierFilter(difference.key));
}

void ComparisonWindow::slot_activated(const QModelIndex &index)
{
    CaptureTab *a = tabOf(m_sides[0]);
    CaptureTab *b = tabOf(m_sides[1]);
    if (!index.isValid() || a == nullptr || b == nullptr || !m_model.comparison()) {
        return;
    }
    const ComparedIdentifier identifier = m_model.at(m_sorted.mapToSource(index).row());
    showIn(*a, identifier);
    if (b != a) {
        showIn(*b, identifier);
    }
    m_tabs.setCurrentWidget(identifier.there.count > 0 ? b : a);
    QStringList moved;
    for (int byte = 0; byte < BusFrame::MaxLength; ++byte) {
        const QString filter = filterOfByte(identifier, byte);
        if (!filter.isEmpty()) {
            moved.append(QLatin1Char('(') + filter + QLatin1Char(')'));
        }
    }
    constexpr int MaxMoved = 20; // a filter has an end
    if (!moved.isEmpty()) {
        const QString filter =
            QLatin1Char('(') + moved.mid(0, MaxMoved).join(QStringLiteral(" or ")) + QLatin1Char(')');
        const QString channel = QStringLiteral(" and channel == %1").arg(identifier.difference.channel + 1);
        goToMove(*b, m_request.tellsChannels ? filter + channel : filter, m_request.b.first);
    }
}

/// Looks for the first frame from first on that passes, and makes it the current one.
void ComparisonWindow::goToMove(CaptureTab &tab, const QString &filter, qint64 first)
{
    FilterError error{};
    const auto parsed = Filter::parse(filter, {}, error);
    if (!parsed) {
        return;
    }
    if (m_stopFinding) {
        *m_stopFinding = true;
    }
    m_stopFinding = std::make_shared<std::atomic<bool>>(false);
    m_findThread.start([this, store = tab.capture().sharedStore(), wanted = *parsed, first, stop = m_stopFinding,
                        place = QPointer<CaptureTab>(&tab)] {
        const qint64 row = findRow(*store, wanted, first, false, *stop).value_or(-1);
        m_calls.post([this, stop, row, place] {
            if (!*stop && row >= 0) {
                seek(place, row, SeekTries);
            }
        });
    });
}

/// Shows a row as soon as the tab's filter has come to it.
void ComparisonWindow::seek(const QPointer<CaptureTab> &tab, qint64 row, int tries)
{
    CaptureTab *open = tab.data();
    if (open == nullptr || tries == 0) {
        return;
    }
    const OpenCapture &capture = open->capture();
    if (!capture.isFiltering() || capture.placeOf(row) < capture.rowCount()) {
        open->showRow(row);
        return;
    }
    QTimer::singleShot(SeekMs, this, [this, tab, row, tries] { seek(tab, row, tries - 1); });
}
