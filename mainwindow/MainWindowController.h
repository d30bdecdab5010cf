#pragma once

#include "generation/IconSetGenerator.h"
#include "mainwindow/BorderImageView.h"
#include "mainwindow/HighlightedButton.h"
#include "mainwindow/ProjectGeneration.h"
#include "platform/services/Bundle.h"
#include "platform/widgets/ColorWell.h"
#include "platform/widgets/FloatSlider.h"
#include "platform/widgets/WindowController.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPointer>

class PreviewStrip;
class QFileDialog;

/// The main window: a picture, its corner and border, a platform, and the button that generates. The settings
/// are in the controls alone. Code that needs a setting reads the control at that moment.
///
/// Every action tolerates a missing control. The control's value then reads as 0, and setting it does
/// nothing.
class MainWindowController final : public WindowController, public GenerationInput {
    Q_OBJECT

  public:
    /// The services that the controller uses. It keeps the references.
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

    // Actions of the controls. `sender` is the control.
    void platformSelected(QObject* sender);
    void roundedChecked(QCheckBox* sender);
    void sliderCornerRadiusAction(FloatSlider* sender);
    void borderChecked(QCheckBox* sender);
    void sliderBorderWidthAction(QObject* sender);
    void colorPickerAction(QObject* sender);
    /// Does nothing while a panel or alert blocks the window.
    void actionGenerateIcons(QObject* sender);

    /// Enables the seven controls. Called after each drop, also of a file that is no picture.
    void imageAddednotification();

    // Actions of the menus.
    /// Shows the sheet that writes icons into a project. Does nothing without a picture, or while a panel or
    /// alert blocks the window.
    void generateForProject();
    bool hasPicture() const { return !_shown.isNull(); }
    /// Asks for a file and does what a drop of it does. Does nothing while a panel or alert blocks the
    /// window.
    void openPicture();
    /// Does what a drop of the file at `path` does.
    void openFile(const QString& path);
    /// Puts the picture of the well on the clipboard, with the pixels that are kept of it.
    void copyPicture();
    /// Does what a drop of the clipboard's files or picture does. Other contents change nothing.
    void pastePicture();
    static bool canPaste(const QMimeData* data);

    // What the generator reads.
    Image sourceImage() const override;
    int platformIndex() const override;
    QString outputPathString() const override { return _outputPathString; }
    IconStyle iconStyle() const override;

    // Generation. IconSetGenerator, IconWriter and IconRenderer do the work, and their headers describe it.
    void generateIconsWithImage(const Image& image) const;
    void outputImage(const Image& image, const QVariantMap& InfoDict, const QStringList& keysArr,
                     const QString& idiom) const;
    QString appiconsetPathString(const QString& idiom) const;
    void saveImage(const Image& image, const QSizeF& withSize, const QString& andName,
                   const QString& idiom) const;
    Image drawImage(const Image& image, const QSizeF& withSize) const;
    static QImage getCgiImageRef(const Image* image);
    /// Writes one picture in the format with the number `type`; see ImageExport, and docs/compatibility.md.
    static void saveImageInSelectedFormat(quint64 type, const QString& FilePath, const QImage& ImageRef);

  protected:
    std::unique_ptr<QWidget> loadWindow() override;
    void windowDidLoad() override;

  private:
    MainWindowController(const QString& windowNibName, const Surroundings& surroundings);

    void giveWellRoom(const QFontMetrics& metrics);
    void connectActions();
    void connectPreview(PreviewStrip& strip);
    /// Whether a panel or alert blocks the window. The window's own comes to the front.
    bool showsPanel();
    double previewWidth() const;
    void setPreviewLayerRadius(double radius);

    /// The output folder that was chosen last.
    QString _outputPathString;
    /// See docs/compatibility.md.
    [[maybe_unused]] QFileDialog* savePanel = nullptr;

    const Bundle& _bundle;
    const Screen& _screen;
    Workspace& _workspace;
    /// The picture of the well, and what was chosen for a project last.
    ShownPicture _shown;
    ProjectSettings _project;
    IconSetGenerator _generator;
};
