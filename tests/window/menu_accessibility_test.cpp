// What assistive technology is told of the menu's dimmed items.

#include "tests/window/player_test.h"

#include <QAccessible>

namespace zvonivec {
namespace {

constexpr std::size_t ITEMS_OF_A_FILE[] = {1, 4, 5, 6, 7, 8};

class MenuAccessibility : public PlayerTest {
protected:
    void SetUp() override {
        start();
        player().ShowPopupMenu();
    }
    QAccessibleInterface& of(std::size_t item) {
        return *QAccessible::queryAccessibleInterface(&widgetOfControl(popup().lblPopup[item]));
    }
    [[nodiscard]] bool canBePressed(std::size_t item) {
        return of(item).actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction());
    }
    void press(std::size_t item) {
        of(item).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
    }
};

TEST_F(MenuAccessibility, DimmedItemsAreNotAvailable) {
    for (const std::size_t item : ITEMS_OF_A_FILE) {
        SCOPED_TRACE(item);
        EXPECT_TRUE(of(item).state().disabled);
        EXPECT_FALSE(canBePressed(item));
        engine().calls.clear();
        press(item); // all the same
        EXPECT_TRUE(engine().calls.empty());
        EXPECT_TRUE(boxes().boxes.empty());
        EXPECT_TRUE(popup().Visible());
    }
    for (const std::size_t item : {0U, 10U, 11U, 12U, 13U, 14U}) {
        EXPECT_FALSE(of(item).state().disabled) << item;
        EXPECT_TRUE(canBePressed(item)) << item;
    }
}

TEST_F(MenuAccessibility, TheMenuContainsItsEntriesAsTheyLie) {
    QAccessibleInterface* menu = QAccessible::queryAccessibleInterface(&popupWindow());
    EXPECT_EQ(menu->role(), QAccessible::PopupMenu);
    EXPECT_EQ(menu->text(QAccessible::Name), "Nabídka");
    std::vector<QString> names;
    for (int i = 0; i < menu->childCount(); ++i) {
        QAccessibleInterface* entry = menu->child(i);
        EXPECT_EQ(entry->parent(), menu);
        names.push_back(entry->text(QAccessible::Name));
        if (names.back().isEmpty()) {
            EXPECT_EQ(entry->role(), QAccessible::Separator);
            EXPECT_TRUE(entry->actionInterface()->actionNames().isEmpty());
            EXPECT_FALSE(entry->state().focusable);
        }
    }
    EXPECT_EQ(names, (std::vector<QString>{"Otevřít...", "Vlastnosti", "", "Vždy navrchu",
                                           "Přehrávat opakovaně", "Zesílit hlasitost o 10%",
                                           "Zeslabit hlasitost o 10%", "", "Přetočit dozadu",
                                           "Pozastavit", "Přehrát", "Zastavit", "Přetočit dopředu",
                                           "", "O programu", "Minimalizovat", "Konec"}));
}

TEST_F(MenuAccessibility, TheLitEntryHasTheFocus) {
    moveOver(popup().lblPopup[13]);
    EXPECT_TRUE(of(13).state().focused);
    EXPECT_FALSE(of(14).state().focused);
    moveOver(popup().lblPopup[14]);
    EXPECT_FALSE(of(13).state().focused);
    EXPECT_TRUE(of(14).state().focused);
    popup().Form_Deactivate();
    EXPECT_FALSE(of(14).state().focused);
}

TEST_F(MenuAccessibility, ItemsOfAFileAreAvailableWithOne) {
    open("a.mp3");
    for (const std::size_t item : ITEMS_OF_A_FILE) {
        EXPECT_FALSE(of(item).state().disabled) << item;
        EXPECT_TRUE(canBePressed(item)) << item;
    }
    press(5);
    EXPECT_EQ(engine().playState(), PlayState::paused);
    engine().fail();
    for (const std::size_t item : ITEMS_OF_A_FILE) {
        EXPECT_TRUE(of(item).state().disabled) << item;
        EXPECT_FALSE(canBePressed(item)) << item;
    }
}

} // namespace
} // namespace zvonivec
