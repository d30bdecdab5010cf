#pragma once

#include "generation/IconSetGenerator.h"
#include "mainwindow/BorderImageView.h"
#include "mainwindow/HighlightedButton.h"
#include "platform/widgets/ColorWell.h"
#include "platform/widgets/FloatSlider.h"
#include "platform/widgets/WindowController.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPointer>

class PreviewStrip;
class QFileDialog;

/// The main window: a picture, its decoration, a platform, and the button that generates. The controls are
/// the only place where the settings are; whoever needs one reads it there at that moment.
///
/// Every action tolerates a missing control: it reads as 0, and setting it does nothing.
class MainWindowController final : public WindowController, public GenerationInput {
    Q_OBJECT

  public:
    /// What the controller needs of the world around it, kept by reference.
    struct Surroundings {
        const Bundle& bundle;
        const Screen& screen;
        Workspace& workspace;
    };

    static std::unique_ptr<MainWindowController> initWithWindowNibName(const QString& name,
                                                                       const Surroundings& surroundings);
    ~MainWindowController() override;

    // Outlets, set when the layout is loaded.
    QPointer<QComboBox> platformSelection;
    QPointer<BorderImageView> imgViewIcon;
    QPointer<QCheckBox> roundedCheckButton;
    QPointer<QCheckBox> borderCheckButton;
    QPointer<FloatSlider> sliderCornerRadius;
    QPointer<FloatSlider> sliderBorderWidth;
    QPointer<ColorWell> colorPicker;
    QPointer<HighlightedButton> generateBtn;

    // Actions of the controls; each sends itself.
    void platformSelected(QObject* sender);
    void roundedChecked(QCheckBox* sender);
    void sliderCornerRadiusAction(FloatSlider* sender);
    void borderChecked(QCheckBox* sender);
    void sliderBorderWidthAction(QObject* sender);
    void colorPickerAction(QObject* sender);
    void actionGenerateIcons(QObject* sender);

    /// Enables the seven controls: a picture, or what was taken for one, has arrived.
    void imageAddednotification();

    // Actions of the menus.
    /// Asks for a file and takes it as a drop does.
    void openPicture();
    /// Puts the picture of the well on the clipboard.
    void copyPicture();
    /// Takes the files or the picture on the clipboard as a drop does; anything else there changes nothing.
    void pastePicture();
    static bool canPaste(const QMimeData* data);

    // What the generator reads.
    Image sourceImage() const override;
    int platformIndex() const override;
    QString outputPathString() const override { return _outputPathString; }
    IconStyle iconStyle() const override;

    // The generation; see IconSetGenerator, IconWriter and IconRenderer, which do it.
    void generateIconsWithImage(const Image& image) const;
    void outputImage(const Image& image, const QVariantMap& InfoDict, const QStringList& keysArr,
                     const QString& idiom) const;
    QString appiconsetPathString(const QString& idiom) const;
    void saveImage(const Image& image, const QSizeF& withSize, const QString& andName,
                   const QString& idiom) const;
    Image drawImage(const Image& image, const QSizeF& withSize) const;
    static QImage getCgiImageRef(const Image* image);
    /// Writes one picture in the format of that number; see ImageExport. Nothing calls it yet.
    static void saveImageInSelectedFormat(quint64 type, const QString& FilePath, const QImage& ImageRef);

  protected:
    std::unique_ptr<QWidget> loadWindow() override;
    void windowDidLoad() override;

  private:
    MainWindowController(const QString& windowNibName, const Surroundings& surroundings);

    void connectActions();
    void connectPreview(PreviewStrip& strip);
    double previewWidth() const;
    void setPreviewLayerRadius(double radius);

    /// The output folder that was chosen last.
    QString _outputPathString;
    /// Never used; the folder chooser is made anew for each generation.
    [[maybe_unused]] QFileDialog* savePanel = nullptr;

    IconSetGenerator _generator;
};
