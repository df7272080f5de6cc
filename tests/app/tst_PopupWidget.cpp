#include "app/PopupWidget.h"
#include "tests/support/TestProgram.h"

#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>
#include <QVBoxLayout>

#include <memory>

namespace {

/// A dialog with a default button, a button that was disabled before, a mnemonic, and a popup with an entry field and
/// a button.
class PopupDialog : public QDialog
{
    Q_OBJECT

public:
    PopupDialog()
    {
        auto *layout = new QVBoxLayout(this);
        for (QPushButton *button : {defaultButton, disabledButton, lastButton}) {
            layout->addWidget(button);
        }
        defaultButton->setDefault(true);
        disabledButton->setEnabled(false);
        resize(600, 500);
        auto *contentLayout = new QVBoxLayout(content);
        contentLayout->addWidget(field);
        contentLayout->addWidget(contentButton);
        popup = new PopupWidget(this);
        popup->setWidget(content);
        popup->setFixedSize(300, 200);
        show();
    }

    QToolButton *closeButton() const { return popup->findChild<QToolButton *>(QStringLiteral("btn_close")); }
    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(windowHandle(), key, modifiers);
    }

    QPushButton *defaultButton = new QPushButton(QStringLiteral("&Default"));
    QPushButton *disabledButton = new QPushButton(QStringLiteral("Disabled"));
    QPushButton *lastButton = new QPushButton(QStringLiteral("Last"));
    QWidget *content = new QWidget(this);
    QLineEdit *field = new QLineEdit;
    QPushButton *contentButton = new QPushButton(QStringLiteral("&Content"));
    PopupWidget *popup = nullptr;
};

} // namespace

class tst_PopupWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_dialog.reset(); }
    void isHiddenAtFirst();
    void holdsTheContentWithoutMargin();
    void staysInTheMiddle();
    void closeButtonCloses();
    void escapeClosesThePopupOnly();
    void escapeWithoutFocusClosesThePopupOnly();
    void disabledCloseButtonKeepsItOpen();
    void mouseDoesNotReachTheDialog();
    void tabStaysInThePopup();
    void enterAndMnemonicsDoNotReachTheDialog();
    void dialogWorksAgainAfterwards();
    void dialogWorksAgainWhenThePopupIsDeleted();
    void minimisingChangesNothing();
    void dialogMayBeClosedMeanwhile();
    void paintsItsFrame();

private:
    std::unique_ptr<PopupDialog> m_dialog;
};

void tst_PopupWidget::init()
{
    m_dialog = std::make_unique<PopupDialog>();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

void tst_PopupWidget::isHiddenAtFirst()
{
    QVERIFY(!m_dialog->popup->isVisible());
    QVERIFY(m_dialog->defaultButton->isEnabled());
}

void tst_PopupWidget::holdsTheContentWithoutMargin()
{
    m_dialog->popup->show();
    QCOMPARE(m_dialog->content->parentWidget(), m_dialog->popup);
    QVERIFY(m_dialog->content->isVisible());
    auto *layout = qobject_cast<QVBoxLayout *>(m_dialog->popup->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(m_dialog->content->geometry().left(), 0);
    QCOMPARE(m_dialog->content->width(), m_dialog->popup->width());
    QCOMPARE(m_dialog->content->geometry().bottom(), m_dialog->popup->height() - 1);
    QCOMPARE(m_dialog->content->geometry().top(), m_dialog->closeButton()->geometry().bottom() + 1);
}

void tst_PopupWidget::staysInTheMiddle()
{
    m_dialog->popup->show();
    QCOMPARE(m_dialog->popup->pos(), QPoint(150, 150));
    m_dialog->resize(800, 700);
    QCOMPARE(m_dialog->popup->pos(), QPoint(250, 250));
}

void tst_PopupWidget::closeButtonCloses()
{
    QSignalSpy closed(m_dialog->popup, &PopupWidget::closed);
    m_dialog->popup->show();
    QTest::mouseClick(m_dialog->closeButton(), Qt::LeftButton);
    QVERIFY(!m_dialog->popup->isVisible());
    QCOMPARE(closed.count(), 1);
    QVERIFY(m_dialog->isVisible());
}

void tst_PopupWidget::escapeClosesThePopupOnly()
{
    QSignalSpy closed(m_dialog->popup, &PopupWidget::closed);
    m_dialog->popup->show();
    m_dialog->pressKey(Qt::Key_Escape);
    QCOMPARE(closed.count(), 1);
    QVERIFY(!m_dialog->popup->isVisible());
    QVERIFY(m_dialog->isVisible());
    m_dialog->pressKey(Qt::Key_Escape); // the dialog's again
    QVERIFY(!m_dialog->isVisible());
}

void tst_PopupWidget::escapeWithoutFocusClosesThePopupOnly()
{
    m_dialog->popup->show();
    QVERIFY(m_dialog->focusWidget() != nullptr);
    m_dialog->focusWidget()->clearFocus();
    QVERIFY(m_dialog->focusWidget() == nullptr);
    m_dialog->pressKey(Qt::Key_Escape);
    QVERIFY(!m_dialog->popup->isVisible());
    QVERIFY(m_dialog->isVisible());
}

void tst_PopupWidget::disabledCloseButtonKeepsItOpen()
{
    QSignalSpy closed(m_dialog->popup, &PopupWidget::closed);
    m_dialog->popup->show();
    m_dialog->popup->enabledCloseButton(false);
    QVERIFY(!m_dialog->closeButton()->isEnabled());
    QTest::mouseClick(m_dialog->closeButton(), Qt::LeftButton);
    m_dialog->pressKey(Qt::Key_Escape);
    QVERIFY(!m_dialog->popup->close());
    QVERIFY(m_dialog->popup->isVisible());
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(closed.count(), 0);
    m_dialog->popup->enabledCloseButton(true);
    QTest::mouseClick(m_dialog->closeButton(), Qt::LeftButton);
    QCOMPARE(closed.count(), 1);
}

void tst_PopupWidget::mouseDoesNotReachTheDialog()
{
    QSignalSpy clicked(m_dialog->defaultButton, &QPushButton::clicked);
    m_dialog->popup->show();
    const QPoint place = m_dialog->defaultButton->mapTo(m_dialog.get(), QPoint(5, 5));
    QTest::mouseClick(m_dialog->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(clicked.count(), 0);
    m_dialog->popup->close();
    QTest::mouseClick(m_dialog->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(clicked.count(), 1);
}

void tst_PopupWidget::tabStaysInThePopup()
{
    m_dialog->defaultButton->setFocus();
    m_dialog->popup->show();
    QCOMPARE(m_dialog->focusWidget(), m_dialog->field);
    QSet<QWidget *> visited;
    for (int i = 0; i < 8; ++i) {
        m_dialog->pressKey(i % 3 == 2 ? Qt::Key_Backtab : Qt::Key_Tab);
        visited.insert(m_dialog->focusWidget());
    }
    QCOMPARE(visited, QSet<QWidget *>({m_dialog->field, m_dialog->contentButton, m_dialog->closeButton()}));
}

void tst_PopupWidget::enterAndMnemonicsDoNotReachTheDialog()
{
    QSignalSpy clicked(m_dialog->defaultButton, &QPushButton::clicked);
    QSignalSpy contentClicked(m_dialog->contentButton, &QPushButton::clicked);
    m_dialog->popup->show();
    m_dialog->pressKey(Qt::Key_Return);
    m_dialog->pressKey(Qt::Key_D, Qt::AltModifier);
    m_dialog->focusWidget()->clearFocus();
    m_dialog->pressKey(Qt::Key_Return);
    QCOMPARE(clicked.count(), 0);
    m_dialog->pressKey(Qt::Key_C, Qt::AltModifier);
    QTRY_COMPARE(contentClicked.count(), 1);
}

void tst_PopupWidget::dialogWorksAgainAfterwards()
{
    m_dialog->lastButton->setFocus();
    m_dialog->popup->show();
    QVERIFY(!m_dialog->defaultButton->isEnabled());
    m_dialog->popup->close();
    QVERIFY(m_dialog->defaultButton->isEnabled());
    QVERIFY(!m_dialog->disabledButton->isEnabled()); // as it was before
    QCOMPARE(m_dialog->focusWidget(), m_dialog->lastButton);
}

void tst_PopupWidget::dialogWorksAgainWhenThePopupIsDeleted()
{
    m_dialog->popup->show();
    delete m_dialog->popup;
    QVERIFY(m_dialog->defaultButton->isEnabled());
    QVERIFY(!m_dialog->disabledButton->isEnabled());
    m_dialog->pressKey(Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
}

void tst_PopupWidget::minimisingChangesNothing()
{
    m_dialog->popup->show();
    m_dialog->showMinimized();
    m_dialog->showNormal();
    QVERIFY(m_dialog->popup->isVisible());
    QVERIFY(!m_dialog->defaultButton->isEnabled());
    m_dialog->popup->close();
    QVERIFY(m_dialog->defaultButton->isEnabled());
}

void tst_PopupWidget::dialogMayBeClosedMeanwhile()
{
    m_dialog->popup->show();
    m_dialog->popup->enabledCloseButton(false);
    const QPointer<PopupWidget> popup(m_dialog->popup);
    m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    m_dialog.reset();
    QVERIFY(popup.isNull());
}

void tst_PopupWidget::paintsItsFrame()
{
    m_dialog->popup->show();
    const QImage image = m_dialog->popup->grab().toImage();
    QVERIFY(image.pixelColor(0, image.height() / 2) != image.pixelColor(5, image.height() / 2));
    QVERIFY(image.pixelColor(image.width() - 1, image.height() / 2) != QColor(Qt::white));
    QCOMPARE(image.pixelColor(5, image.height() / 2), QColor(Qt::white));
}

X9_GUI_TEST(tst_PopupWidget)
#include "tst_PopupWidget.moc"
