// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/FsTab.h"

#include <QPointer>
#include <QWidget>

class EndPage;
class QScreen;
class QVBoxLayout;
class RestorePage;
class Task;
class WorkingPage;

/// The program's only window: it shows the restore page, runs a pending or chosen task on the working page, tells on
/// the end page how it ended, and keeps itself fitted to the screen. It cannot be closed.
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);

    /// The installed system's fstab; to be given before initUI().
    void setFstabEntries(const FSTabInfoList& entries);

    /// Builds the restore page, offering what the installed system supports; to be called once.
    void initUI();

    /// Starts the pending task. An empty object, or one of an unknown type, changes nothing.
    void setRecovery(const QJsonObject& task);

    /// Moves the window to the middle of a screen and keeps its content off what lies beyond that screen's edges.
    void centreOn(const QRect& screen);

    /// The same at start-up. Deliberate: where the screen lies beside others does not count then.
    void centreAtStartUp(const QRect& screen) { centreOn(QRect(QPoint(0, 0), screen.size())); }

public Q_SLOTS:
    /// Replaces the page by a working page for the task, and listens to the task.
    void showWorkingPage();
    /// The task succeeded: keeps the log, then restarts at once or tells so.
    void onFinished();
    /// The task failed: keeps the log, then restarts at once or tells why.
    void onFailed(const QString& error);
    /// Fits the window to the primary screen when the screens have changed; to be called every few seconds.
    void onDetectScreen();

private Q_SLOTS:
    void onGeometryChanged(const QRect& geometry);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    [[nodiscard]] QWidget* frameFor(RestorePage* page);
    void connectPage(RestorePage* page);
    void startSystemRestore(bool formatData);
    void startManualRestore(const QString& directory);
    void reportUnstartedTask();
    void confirmExit();
    void showEndPage(int state);
    void setPage(QWidget* page);
    [[nodiscard]] bool isBackup() const;
    void autoAdapterScreen();

    QVBoxLayout* m_content = nullptr; ///< holds exactly one page
    WorkingPage* m_workingPage = nullptr;
    EndPage* m_endPage = nullptr;
    Task* m_task = nullptr;
    int m_taskType = 0;                ///< a TaskType
    QPointer<QScreen> m_primaryScreen; ///< the one that the window was last fitted to
    QString m_screenName;
    FSTabInfoList m_fstabEntries;
};
