#include "mainwindow/MainWindowController.h"

#include "base/Log.h"
#include "generation/ImageExport.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/svg/SvgTime.h"
#include "mainwindow/IconSizes.h"
#include "mainwindow/LabelSides.h"
#include "mainwindow/MimeContents.h"
#include "mainwindow/PictureFiles.h"
#include "mainwindow/ProjectSheet.h"
#include "platform/services/NotificationCenter.h"
#include "platform/widgets/Alert.h"
#include "platform/widgets/ChangeFollower.h"
#include "ui_MainWindowController.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QMainWindow>
#include <QMimeData>
#include <QScreen>

#include <algorithm>

namespace {

/// A value beside a slider that is as wide as any.
constexpr double widestPercent = 0.4444;

/// The width of the settings, in points and in characters.
constexpr int leastSettings = 280;
constexpr int settingsCharacters = 26;

} // namespace

MainWindowController::MainWindowController(const QString& windowNibName, const Surroundings& surroundings)
    : WindowController(windowNibName),
      _bundle(surroundings.bundle),
      _screen(surroundings.screen),
      _workspace(surroundings.workspace),
      _generator(*this, {surroundings.screen, surroundings.workspace}) {}

MainWindowController::~MainWindowController() {
    // The window's parts read the controls through this object, so the window goes first.
    releaseWindow();
}

std::unique_ptr<MainWindowController>
MainWindowController::initWithWindowNibName(const QString& name, const Surroundings& surroundings) {
    // std::make_unique can't call the private constructor.
    return std::unique_ptr<MainWindowController>(new MainWindowController(name, surroundings));
}

std::unique_ptr<QWidget> MainWindowController::loadWindow() {
    auto window = std::make_unique<QMainWindow>();
    Ui::MainWindowController layout;
    layout.setupUi(window.get());
    platformSelection = layout.platformSelection;
    imgViewIcon = layout.imgViewIcon;
    roundedCheckButton = layout.roundedCheckButton;
    borderCheckButton = layout.borderCheckButton;
    sliderCornerRadius = layout.sliderCornerRadius;
    sliderBorderWidth = layout.sliderBorderWidth;
    colorPicker = layout.colorPicker;
    generateBtn = layout.generateBtn;
    // A layout can't set properties of the view's layer.
    imgViewIcon->layer().setMasksToBounds(true);
    // No control gains from more room.
    window->layout()->setSizeConstraint(QLayout::SetFixedSize);
    window->setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    alignLabels(*window);
    // A label looks enabled while its control is enabled.
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr)
            new ChangeFollower(*label->buddy(), QEvent::EnabledChange, *label,
                               [label] { label->setEnabled(label->buddy()->isEnabled()); });
    }
    layout.cornerRadiusValue->setText(sliderCornerRadius->valueText());
    layout.borderWidthValue->setText(sliderBorderWidth->valueText());
    for (QLabel* value : {layout.cornerRadiusValue, layout.borderWidthValue})
        new ChangeFollower(*value, QEvent::FontChange, *value, [this, value] {
            value->setMinimumWidth(
                value->fontMetrics().horizontalAdvance(sliderCornerRadius->percentText(widestPercent)));
        });
    new ChangeFollower(*platformSelection, QEvent::FontChange, *platformSelection, [this] {
        platformSelection->setMinimumWidth(
            qMax(leastSettings, settingsCharacters * platformSelection->fontMetrics().averageCharWidth()));
    });
    new ChangeFollower(*imgViewIcon, QEvent::FontChange, *imgViewIcon,
                       [this] { giveWellRoom(imgViewIcon->fontMetrics()); });
    HighlightedButton::awakeAll(*window);
    connectActions();
    connectPreview(*layout.previewStrip);
    imgViewIcon->setRenders([this] { return allIconSizes(_bundle, _screen); });
    layout.wellFrame->surround(*imgViewIcon);
    layout.pictureCaption->follow(*imgViewIcon, *platformSelection, _bundle, _screen);
    layout.planCaption->follow(*platformSelection, _bundle, _screen);
    return window;
}

/// Makes the well as wide as its caption wants to be, where the display has the height for it.
void MainWindowController::giveWellRoom(const QFontMetrics& metrics) {
    constexpr int least = 272;
    constexpr int charactersOfCaption = 28;
    constexpr double partOfDisplay = 0.36;
    const int highest = std::max(
        least, static_cast<int>(imgViewIcon->screen()->availableGeometry().height() * partOfDisplay));
    const int before = imgViewIcon->width();
    const int side = std::clamp(charactersOfCaption * metrics.averageCharWidth(), least, highest);
    imgViewIcon->setFixedSize(side, side);
    // The corner keeps its share of the side.
    imgViewIcon->layer().setCornerRadius(imgViewIcon->layer().cornerRadius() * side / before);
}

/// The controls send these signals for what the user does, and never for what the program sets.
void MainWindowController::connectActions() {
    connect(platformSelection, &QComboBox::activated, this, [this] { platformSelected(platformSelection); });
    connect(roundedCheckButton, &QCheckBox::clicked, this, [this] { roundedChecked(roundedCheckButton); });
    // At 0 the box alone changes nothing that can be seen. The slider is what comes next.
    connect(roundedCheckButton, &QCheckBox::clicked, sliderCornerRadius, [this](bool isChecked) {
        if (isChecked && sliderCornerRadius->floatValue() == 0)
            sliderCornerRadius->setFocus();
    });
    connect(sliderCornerRadius, &FloatSlider::action, this,
            [this] { sliderCornerRadiusAction(sliderCornerRadius); });
    connect(borderCheckButton, &QCheckBox::clicked, this, [this] { borderChecked(borderCheckButton); });
    connect(sliderBorderWidth, &FloatSlider::action, this,
            [this] { sliderBorderWidthAction(sliderBorderWidth); });
    connect(colorPicker, &ColorWell::action, this, [this] { colorPickerAction(colorPicker); });
    connect(generateBtn, &QPushButton::clicked, this, [this] { actionGenerateIcons(generateBtn); });
    connect(imgViewIcon, &BorderImageView::pressed, this, &MainWindowController::openPicture);
    connect(imgViewIcon, &BorderImageView::pictureArrived, this,
            [this](const QString& path, const LoadedPicture& picture) {
                _shown = {path, imgViewIcon->pastedBytes(), picture};
            });
    connect(imgViewIcon, &BorderImageView::pictureRefused, this, [this] { _shown = {}; });
}

void MainWindowController::connectPreview(PreviewStrip& strip) {
    connect(roundedCheckButton, &QCheckBox::toggled, &strip, &PreviewStrip::renderLater);
    connect(borderCheckButton, &QCheckBox::toggled, &strip, &PreviewStrip::renderLater);
    connect(sliderCornerRadius, &FloatSlider::valueTextChanged, &strip, &PreviewStrip::renderLater);
    connect(sliderBorderWidth, &FloatSlider::valueTextChanged, &strip, &PreviewStrip::renderLater);
    connect(colorPicker, &ColorWell::colorChanged, &strip, &PreviewStrip::renderLater);
    connect(platformSelection, &QComboBox::currentIndexChanged, &strip, qOverload<>(&QWidget::update));
    NotificationCenter::defaultCenter().addObserver(&strip, BorderImageView::imageAdded,
                                                    [&strip](const Notification&) { strip.render(); });
    strip.setInput(*this);
}

void MainWindowController::windowDidLoad() {
    WindowController::windowDidLoad();
    if (platformSelection != nullptr)
        platformSelection->setCurrentIndex(0);
    if (roundedCheckButton != nullptr)
        roundedCheckButton->setHidden(false);
    NotificationCenter::defaultCenter().addObserver(
        this, BorderImageView::imageAdded, [this](const Notification&) { imageAddednotification(); });
}

void MainWindowController::imageAddednotification() {
    // Each control is enabled through its own class, because HighlightedButton has its own `setEnabled`.
    const auto enable = [](const auto& control) {
        if (control != nullptr)
            control->setEnabled(true);
    };
    enable(roundedCheckButton);
    enable(borderCheckButton);
    enable(sliderCornerRadius);
    enable(sliderBorderWidth);
    enable(colorPicker);
    enable(generateBtn);
    enable(platformSelection);
}

void MainWindowController::platformSelected(QObject* /*sender*/) {
    logLine(QStringLiteral("platform selected index:%1").arg(platformIndex()));
}

double MainWindowController::previewWidth() const {
    return imgViewIcon != nullptr ? imgViewIcon->width() : 0;
}

void MainWindowController::setPreviewLayerRadius(double radius) {
    if (imgViewIcon != nullptr)
        imgViewIcon->layer().setCornerRadius(radius);
}

namespace {

bool isOn(const QCheckBox* button) {
    return button != nullptr && button->checkState() != Qt::Unchecked;
}

float valueOf(const FloatSlider* slider) {
    return slider != nullptr ? slider->floatValue() : 0;
}

} // namespace

void MainWindowController::roundedChecked(QCheckBox* sender) {
    if (imgViewIcon != nullptr)
        imgViewIcon->setRoundCorner(isOn(sender));
    if (!isOn(sender)) {
        setPreviewLayerRadius(0);
        return;
    }
    // The radius of the preview's own outline follows the slider alone. See docs/compatibility.md.
    setPreviewLayerRadius(static_cast<double>(valueOf(sliderCornerRadius)) * previewWidth());
}

void MainWindowController::sliderCornerRadiusAction(FloatSlider* sender) {
    if (imgViewIcon != nullptr)
        imgViewIcon->setCornerRadiusPercent(valueOf(sender));
    // The check box has no say here. See docs/compatibility.md.
    setPreviewLayerRadius(static_cast<double>(valueOf(sender)) * previewWidth());
}

void MainWindowController::borderChecked(QCheckBox* sender) {
    if (imgViewIcon == nullptr)
        return;
    imgViewIcon->setBorder(isOn(sender));
    imgViewIcon->setBorderWidth(valueOf(sliderBorderWidth));
    imgViewIcon->setBorderColor(colorPicker != nullptr ? std::optional(colorPicker->color()) : std::nullopt);
}

void MainWindowController::sliderBorderWidthAction(QObject* /*sender*/) {
    if (imgViewIcon != nullptr)
        imgViewIcon->setBorderWidth(valueOf(sliderBorderWidth));
}

void MainWindowController::colorPickerAction(QObject* /*sender*/) {
    if (imgViewIcon != nullptr)
        imgViewIcon->setBorderColor(colorPicker != nullptr ? std::optional(colorPicker->color())
                                                           : std::nullopt);
}

/// Assistive technology presses controls directly, also while a panel blocks their window.
bool MainWindowController::showsPanel() {
    for (QDialog* panel : window()->findChildren<QDialog*>(Qt::FindDirectChildrenOnly)) {
        if (!panel->isVisible() || !panel->isModal())
            continue;
        panel->raise();
        panel->activateWindow();
        return true;
    }
    return QApplication::activeModalWidget() != nullptr;
}

void MainWindowController::actionGenerateIcons(QObject* /*sender*/) {
    if (showsPanel())
        return;
    if (sourceImage().isNull() || platformIndex() == -1) {
        auto* alert = new Alert;
        alert->setMessageText(QStringLiteral("Icon File Error"));
        alert->setInformativeText(QStringLiteral("Please drag and drop icon file first!"));
        alert->addButtonWithTitle(QStringLiteral("Ok"));
        alert->setAlertStyle(Alert::Style::Warning);
        alert->beginSheetModalForWindow(window());
        return;
    }
    auto* panel = new QFileDialog(window());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    connect(panel, &QDialog::finished, this, [this, panel](int response) {
        const QList<QUrl> chosen = panel->selectedUrls();
        if (response != QDialog::Accepted || chosen.isEmpty())
            return;
        _outputPathString = chosen.first().toLocalFile();
        generateIconsWithImage(sourceImage());
    });
    panel->open();
}

void MainWindowController::generateForProject() {
    if (showsPanel() || !hasPicture())
        return;
    auto* sheet = new ProjectSheet(window(), _shown, iconStyle(), _project, _workspace);
    sheet->open();
}

void MainWindowController::openPicture() {
    if (showsPanel())
        return;
    auto* panel = new QFileDialog(window());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilters(pictureFilters());
    connect(panel, &QFileDialog::accepted, this, [this, panel] {
        QMimeData dropped;
        dropped.setUrls(panel->selectedUrls());
        if (imgViewIcon != nullptr)
            imgViewIcon->performDragOperation(&dropped);
    });
    panel->open();
}

void MainWindowController::openFile(const QString& path) {
    if (imgViewIcon != nullptr && !showsPanel())
        imgViewIcon->takeFile(path);
}

void MainWindowController::copyPicture() {
    const Image picture = sourceImage();
    if (picture.isNull())
        return;
    const Result<QImage> own = picture.largestRaster();
    // An SVG picture has no samples of its own.
    const bool isDrawing = own && own->isNull();
    if (const Result<QImage> raster = isDrawing ? drawnRaster(picture, picture.size()) : own)
        QGuiApplication::clipboard()->setImage(*raster);
}

void MainWindowController::pastePicture() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (imgViewIcon == nullptr || !canPaste(data))
        return;
    if (!MimeContents::fileNames(*data).isEmpty())
        imgViewIcon->performDragOperation(data);
    else
        imgViewIcon->takePicture(MimeContents::picture(*data));
}

bool MainWindowController::canPaste(const QMimeData* data) {
    return data != nullptr && (!MimeContents::fileNames(*data).isEmpty() || MimeContents::hasPicture(*data));
}

Image MainWindowController::sourceImage() const {
    return imgViewIcon != nullptr ? imgViewIcon->image() : Image();
}

int MainWindowController::platformIndex() const {
    return platformSelection != nullptr ? platformSelection->currentIndex() : 0;
}

IconStyle MainWindowController::iconStyle() const {
    return {isOn(roundedCheckButton), valueOf(sliderCornerRadius), isOn(borderCheckButton),
            valueOf(sliderBorderWidth), colorPicker != nullptr ? colorPicker->color() : Color()};
}

void MainWindowController::generateIconsWithImage(const Image& image) const {
    const SvgRequest request(svgSecondsOfGeneration);
    // The catalogue may be another one each time.
    _generator.generateIconsWithImage(image, IconSizeCatalogue::load(_bundle));
}

void MainWindowController::outputImage(const Image& image, const QVariantMap& InfoDict,
                                       const QStringList& keysArr, const QString& idiom) const {
    _generator.outputImage(image, InfoDict, keysArr, idiom);
}

QString MainWindowController::appiconsetPathString(const QString& idiom) const {
    return _generator.appiconsetPathString(idiom);
}

void MainWindowController::saveImage(const Image& image, const QSizeF& withSize, const QString& andName,
                                     const QString& idiom) const {
    _generator.writer().saveImage(image, withSize, andName, idiom);
}

Image MainWindowController::drawImage(const Image& image, const QSizeF& withSize) const {
    return _generator.renderer().drawImage(image, withSize);
}

QImage MainWindowController::getCgiImageRef(const Image* image) {
    return IconRenderer::getCgiImageRef(image);
}

void MainWindowController::saveImageInSelectedFormat(quint64 type, const QString& FilePath,
                                                     const QImage& ImageRef) {
    // Nobody is told of a failure.
    static_cast<void>(ImageExport::saveImageInSelectedFormat(type, FilePath, ImageRef));
}
