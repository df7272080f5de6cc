#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
#include "viewer/FilterEdit.h"
#include "viewer/TableSettings.h"

#include <QAction>
#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class tst_FilterEdit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void recentFilters();
    void recentFiltersAreKept();
    void damagedSettings();
    void escapeGivesBack();
    void anotherDatabase();
    void signalsAreOffered();

private:
    ViewerSettings settings() const { return ViewerSettings(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TableSettings> m_settings;
    std::unique_ptr<FilterEdit> m_edit;
};

void tst_FilterEdit::init()
{
    m_edit.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<TableSettings>(settings());
    m_edit = std::make_unique<FilterEdit>();
    m_edit->setSettings(*m_settings);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_edit.get()));
    m_edit->setFocus();
}

void tst_FilterEdit::recentFilters()
{
    QTest::keyClick(m_edit.get(), Qt::Key_Down);
    QVERIFY(QApplication::activePopupWidget() == nullptr); // there are none
    for (const char *text : {"id == 1", "id == 2", "fd and", " id == 1 ", ""}) {
        m_edit->take(QString::fromLatin1(text));
    }
    QCOMPARE(m_settings->filters(), (QStringList{QStringLiteral("id == 1"), QStringLiteral("id == 2")}));
    m_edit->setText(QStringLiteral("id == 1 and "));
    QTest::keyClick(m_edit.get(), Qt::Key_Down);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QCOMPARE(m_edit->text(), QStringLiteral("id == 2"));
    m_edit->findChild<QAction *>(QStringLiteral("recentFilters"))->trigger();
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QApplication::activePopupWidget()->close();
}

void tst_FilterEdit::recentFiltersAreKept()
{
    for (int i = 0; i < TableSettings::MaxFilters + 3; ++i) {
        m_edit->take(QStringLiteral("id == %1").arg(i));
    }
    const TableSettings again(settings());
    QCOMPARE(again.filters().size(), int(TableSettings::MaxFilters));
    QCOMPARE(again.filters().first(), QStringLiteral("id == 22"));
}

void tst_FilterEdit::damagedSettings()
{
    QFile file(QDir(m_folder->path()).filePath(QStringLiteral("X9Viewer.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[General]\ncolorRules=@Invalid()\ncolumns=\"[[{\"\nfilters=" + QByteArray(30000, 'x') + ", , fd\n");
    file.close();
    const TableSettings damaged(settings());
    QCOMPARE(damaged.filters(), QStringList{QStringLiteral("fd")});
    QCOMPARE(damaged.rules(), ColorRule::standard());
    QVERIFY(damaged.columns() == ColumnLayout());
}

void tst_FilterEdit::escapeGivesBack()
{
    m_edit->take(QStringLiteral("fd"));
    m_edit->setText(QStringLiteral("ext"));
    QTest::keyClick(m_edit.get(), Qt::Key_Escape);
    QCOMPARE(m_edit->text(), QStringLiteral("fd"));
    m_edit->edit(QStringLiteral("lin"));
    m_edit->setText(QStringLiteral("ext"));
    QTest::keyClick(m_edit.get(), Qt::Key_Escape);
    QCOMPARE(m_edit->text(), QStringLiteral("lin"));
}

void tst_FilterEdit::anotherDatabase()
{
    QSignalSpy renewed(m_edit.get(), &FilterEdit::sig_filterRenewed);
    QSignalSpy problem(m_edit.get(), &FilterEdit::sig_problemChanged);
    QVERIFY(!m_edit->take(QStringLiteral("Speed > 5")));
    QVERIFY(!m_edit->problem().isEmpty());
    m_edit->setSource(std::make_shared<TestSignals>());
    QVERIFY(m_edit->problem().isEmpty());
    QVERIFY(renewed.isEmpty()); // nothing was taken yet
    QVERIFY(m_edit->take(QStringLiteral("Speed > 5")));
    m_edit->setSource(std::make_shared<TestSignals>());
    QCOMPARE(renewed.count(), 1);
    m_edit->setSource(nullptr);
    QCOMPARE(renewed.count(), 1);
    QVERIFY(!m_edit->problem().isEmpty());
    QCOMPARE(problem.count(), 3);
}

void tst_FilterEdit::signalsAreOffered()
{
    m_edit->setSource(std::make_shared<TestSignals>());
    QTest::keyClicks(m_edit.get(), QStringLiteral("Tem"));
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QCOMPARE(m_edit->text(), QStringLiteral("Temp "));
}

X9_GUI_TEST(tst_FilterEdit)
#include "tst_FilterEdit.moc"
