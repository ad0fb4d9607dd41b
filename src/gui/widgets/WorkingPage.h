// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class VWaterProgress;

/// The page that is shown while a task runs: a water level, a title and a warning line. Alt+F4 ends the program.
class WorkingPage : public QWidget
{
    Q_OBJECT

public:
    /// Begins with the texts of a restore and with 1 percent.
    explicit WorkingPage(QWidget* parent = nullptr);

    /// An empty text leaves the title as it is.
    void setTitle(const QString& title);
    /// An empty text leaves the warning line as it is.
    void setTip(const QString& tip);

public Q_SLOTS:
    /// Shows the percentage, clamped to 0..100; it never falls.
    void setProgress(int percent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    VWaterProgress* m_progress = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_tip = nullptr;
};
