#include "mainwindow/LayoutList.h"
#include "mainwindow/PictureWell.h"
#include "mainwindow/ProjectSheet.h"
#include "platform/widgets/ImageFrame.h"
#include "tests/shell/EdgesFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>

namespace {

class ProjectSheetEdges : public EdgesFixture {
  protected:
    ProjectSheetEdges() {
        arrive();
        controller().generateForProject();
        Events::settle();
        m_sheet = mainWindow()->findChild<ProjectSheet*>();
        auto* list = m_sheet->findChild<LayoutList*>();
        list->setTicked({QStringLiteral("android")});
        Q_EMIT list->tickedChanged();
        m_sheet->findChild<QLineEdit*>()->setText(folder.path());
        Events::settle();
        if (QWidget* focused = m_sheet->focusWidget())
            focused->clearFocus();
        Events::settle();
    }

    ProjectSheet* m_sheet = nullptr;
};

TEST_P(ProjectSheetEdges, of_every_control_can_be_seen) {
    std::vector<QWidget*> controls{m_sheet->findChild<LayoutList*>(), m_sheet->findChild<QScrollArea*>(),
                                   m_sheet->findChild<QComboBox*>(), m_sheet->findChild<QLineEdit*>(),
                                   m_sheet->findChild<ColorWell*>()};
    for (const char* button : {"chooseButton", "cancelButton", "generateButton"})
        controls.push_back(m_sheet->findChild<QPushButton*>(QLatin1String(button)));
    for (ImageFrame* frame : m_sheet->findChildren<ImageFrame*>())
        controls.push_back(frame);
    EXPECT_EQ(controls.size(), 12);
    for (QWidget* control : controls) {
        EXPECT_TRUE(control->isEnabled() && control->isVisible()) << control->objectName().toStdString();
        EXPECT_GE(weakestEdge(control), leastEdgeContrast) << control->objectName().toStdString();
    }
}

TEST_P(ProjectSheetEdges, text_can_be_read) {
    int count = 0;
    for (QLabel* label : m_sheet->findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty())
            continue;
        ++count;
        EXPECT_GE(textContrast(label, label->rect()), text) << label->text().toStdString();
    }
    EXPECT_GE(count, 12);
    // The line of the focus is left out.
    auto* list = m_sheet->findChild<LayoutList*>();
    const QRect row = list->visualItemRect(list->topLevelItem(2));
    EXPECT_GE(textContrast(list->viewport(), row.adjusted(30, 0, 0, 0)), text);
}

INSTANTIATE_TEST_SUITE_P(Light, ProjectSheetEdges, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Dark, ProjectSheetEdges, testing::Values(true));

} // namespace
