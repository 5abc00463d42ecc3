// The areas of the deck's record: where they come from, what they make of the sample, and their way into a
// file.
#include "qwpainter.h"

#include "qwpainterwav.h"

#include "dialog/messagebox.h"
#include "dialog/savecolorphrasing.h"

#include "model/constants.h"
#include "module/wavedata.h"
#include "phrasing/managephrasing.h"
#include "phrasing/phrasing.h"
#include "phrasing/phrasingfile.h"
#include "phrasing/wavesegments.h"
#include "phrasing/wavphrasing.h"
#include "state/pathfile.h"
#include "state/singleton.h"

#include <QDir>

void QWPainter::refreshListManagePhrasing() {
    m_colorAreas->setListPhrasing(Singleton::instance().phrasing()->listPhrasing(m_deckName));
    generateWavPhrasing();
}

void QWPainter::generateWavPhrasing() {
    const auto wav = Singleton::instance().wavPhrasing()->wav(m_deckName);
    m_wavePainter->build(wav, wav ? waveSegments(m_colorAreas->listPhrasing(), wav->length())
                                  : std::vector<WaveSegment>());
    refreshVariable();
}

void QWPainter::followAreas() {
    const auto wav = Singleton::instance().wavPhrasing()->wav(m_deckName);
    if (m_wavePainter->hasWave() && wav &&
        waveSegments(m_colorAreas->listPhrasing(), wav->length()) != m_wavePainter->segments()) {
        generateWavPhrasing();
    }
}

void QWPainter::saveToColorFileA() {
    saveToColorFile(ModelGraph::INPUT_DECKA, m_saveDialogA);
}

void QWPainter::saveToColorFileB() {
    saveToColorFile(ModelGraph::INPUT_DECKB, m_saveDialogB);
}

void QWPainter::saveToColorFile(ModelGraph::EnumGraph deck, QPointer<SaveColorPhrasing>& dialog) {
    if (dialog != nullptr) {
        return;
    }
    dialog = new SaveColorPhrasing(deck, this);
    connect(dialog, &QDialog::finished, this, [this, asked = dialog.data()](int result) {
        if (result == QDialog::Accepted) {
            createGRPXMLFromDlg(asked->fileName()); // waits for the user
        }
        asked->deleteLater();
    });
    dialog->show();
}

void QWPainter::createGRPXMLFromDlg(QString pathFilename) {
    createGRPXML(pathColor(pathFilename + Constant::Extension::phrasing), true);
}

void QWPainter::createGRPXML(QString pathFilename) {
    createGRPXML(pathFilename, true);
}

void QWPainter::createGRPXML(QString pathFilename, bool showMsg) {
    const PhrasingSave result = saveGRPFile(pathFilename, m_colorAreas->listPhrasing());
    if (result == PhrasingSave::Exists) {
        showMessage(this, QMessageBox::Information, tr("File already imported !"));
        return;
    }
    if (!showMsg) {
        return;
    }
    if (result != PhrasingSave::Saved) {
        showMessage(this, QMessageBox::Warning,
                    tr("Could not be written: %1").arg(QDir::toNativeSeparators(pathFilename)));
        return;
    }
    if (readGRPFile(pathFilename) == nullptr) { // areas of a file that was made by hand, and a key upon them
        showMessage(this, QMessageBox::Information, tr("Non-compliant file !"));
        return;
    }
    Q_EMIT s_newColorFile(pathFilename);
    showMessage(this, QMessageBox::Information, tr("New file has been created and loaded into color tab !!"),
                QMessageBox::Yes);
}
