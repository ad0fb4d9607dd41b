// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "platform/velk/VDialog.h"
#include "support/DialogAnswer.h"

#include <QAbstractButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class VDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
    void enterChoosesTheDefault();
    void enterChoosesWhatHasTheFocus();
    void heldEnterIsNoAnswer();
    void keyboardComesAndGoesBack();
    void unknownButton();
};

void VDialogTest::answers_data()
{
    QTest::addColumn<int>("pressed");
    QTest::addColumn<int>("result");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("second") << 1 << 1;
    QTest::newRow("escape is no button") << -1 << -1;
}

void VDialogTest::answers()
{
    QFETCH(int, pressed);
    QFETCH(int, result);
    VDialog dialog(u"Title"_s, u"Question?"_s);
    QCOMPARE(dialog.addButton(u"Cancel"_s), 0);
    QCOMPARE(dialog.addButton(u"Go"_s, true, VDialog::ButtonWarning), 1);
    DialogAnswer answer(pressed);
    QCOMPARE(dialog.exec(), result);
    QCOMPARE(answer.dialogs, 1);
    QCOMPARE(answer.message, u"Question?"_s);
    QVERIFY(answer.confirmHasFocus);
}

void VDialogTest::enterChoosesTheDefault()
{
    VDialog dialog;
    dialog.addButton(u"Cancel"_s);
    dialog.addButton(u"Go"_s, true);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(dialog.result(), 1);
}

void VDialogTest::enterChoosesWhatHasTheFocus()
{
    VDialog dialog;
    dialog.addButton(u"Cancel"_s);
    dialog.addButton(u"Go"_s, true, VDialog::ButtonWarning);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), dialog.getButton(0));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(dialog.result(), 0);
    QVERIFY(!dialog.isVisible());
}

void VDialogTest::heldEnterIsNoAnswer()
{
    VDialog dialog;
    dialog.addButton(u"Cancel"_s);
    dialog.addButton(u"Go"_s, true, VDialog::ButtonWarning);
    dialog.show();
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QApplication::sendEvent(dialog.getButton(1), &repeated);
    QVERIFY(dialog.isVisible());
    QTest::keyClick(dialog.getButton(1), Qt::Key_Return);
    QCOMPARE(dialog.result(), 1);
}

void VDialogTest::keyboardComesAndGoesBack()
{
    QWidget window;
    window.show();
    VDialog dialog(u"Title"_s, u"Question?"_s, &window);
    dialog.addButton(u"Go"_s, true);
    QWidget* keyboardOwner = nullptr;
    QTimer::singleShot(0, &dialog, [&] {
        keyboardOwner = QTest::qWaitForWindowActive(&dialog) ? QApplication::activeWindow() : nullptr;
        dialog.done(-1);
    });
    dialog.exec();
    QCOMPARE(keyboardOwner, &dialog);
    QTRY_COMPARE(QApplication::activeWindow(), &window);
}

void VDialogTest::unknownButton()
{
    VDialog dialog;
    dialog.addButton(u"Cancel"_s);
    QVERIFY(dialog.getButton(0) != nullptr);
    QVERIFY(dialog.getButton(1) == nullptr);
    QVERIFY(dialog.getButton(-1) == nullptr);
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    VDialogTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_vdialog.moc"
