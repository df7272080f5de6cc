#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINCaptureReader.h"
#include "lin/LINModePage.h"
#include "lin/LINPlayback.h"
#include "lin/LINSlaveScan.h"

#include <memory>

class LINIdPairs;

namespace Ui {
class GUI_LINModeDeveloper;
}

/// Tools for the development of a LIN node: a calculator of PID and checksum, a search for the identifiers that slaves
/// answer, and the playback of an imported capture.
class GUI_LINModeDeveloper : public LINModePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeDeveloper(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeDeveloper() override;

signals:
    /// Results for the table of list mode.
    void sig_addRowItems(const QVector<CTableViewLIN::DataObject> &datas);

protected:
    void enableStartControls(bool enabled) override;
    void slot_startBtnClicked() override;
    /// Ends a playback or gives up reading a file. Out of reach during a scan.
    void slot_stopBtnClicked() override;
    void slot_sendTimeoutEvent() override;

private slots:
    void slot_calculateBtnClicked();
    void slot_scanIDBtnClicked();
    void slot_importDataBtnClicked();
    void slot_imported(const QVector<CTableViewLIN::DataObject> &frames, bool isCapture);

private:
    void connectSignals();
    void import(const QString &path);
    void setFrames(const QVector<CTableViewLIN::DataObject> &frames);
    void enableControls();
    void showCycle();
    void scanNext();
    void playNext();

    std::unique_ptr<Ui::GUI_LINModeDeveloper> m_ui;
    std::unique_ptr<LINIdPairs> m_masks;
    LINCaptureReader m_reader;
    QVector<CTableViewLIN::DataObject> m_frames; ///< imported, or found by the scan
    LINSlaveScan m_scan;
    LINPlayback m_playback;
    bool m_isScanning = false; ///< the timer strikes for the scan, otherwise for the playback
    bool m_isFree = true;      ///< no mode runs
};
