#include "platform/qt/views/NodeTree.h"
#include "platform/qt/views/PictureNodes.h"
#include "platform/qt/views/TextFieldNode.h"
#include "platform/qt/views/TextNodes.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "tests/support/InstalledPlatform.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QPointer>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <random>

namespace tessel::qt {
namespace {

using testing::ElementsAre;

class Drawing final : public View {
public:
    [[nodiscard]] bool drawsItself() const override { return true; }
};

class Refusing final : public TextFieldDelegate {
public:
    bool textFieldShouldBeginEditing(TextField&) override { return !refuses; }
    bool textFieldShouldEndEditing(TextField&) override { return !refuses; }
    bool textFieldShouldChangeCharacters(TextField&, std::size_t, std::size_t, const std::string& text) override
    {
        returns += text == "\n" ? 1 : 0;
        return !refuses;
    }

    bool refuses = false;
    int returns = 0;
};

void deleteWhatIsToBeDeletedLater()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

class NodeTest : public testing::Test {
protected:
    template <typename Kind>
    Kind* node(const std::shared_ptr<View>& view)
    {
        return qobject_cast<Kind*>(tree.nodeFor(view));
    }
    Device& device() { return platform.services().device; }

    InstalledPlatform platform;
    NodeTree tree{false};
    std::shared_ptr<View> root = std::make_shared<View>(Rect{0, 0, 400, 800});
};

TEST_F(NodeTest, AreOfTheKindsOfTheirViews)
{
    root->addSubview(std::make_shared<Label>("text"));
    root->addSubview(std::make_shared<Button>("title"));
    root->addSubview(std::make_shared<TextField>());
    root->addSubview(std::make_shared<ImageView>());
    root->addSubview(std::make_shared<ScrollView>());
    root->addSubview(std::make_shared<StackView>());
    root->addSubview(std::make_shared<Drawing>());
    root->addSubview(std::make_shared<View>());
    std::vector<std::string> kinds;
    for (const auto* const child : tree.nodeFor(root)->childList()->nodes())
        kinds.push_back(child->kind().toStdString());
    EXPECT_THAT(kinds, ElementsAre("label", "button", "textField", "image", "scroll", "stack", "drawn", "plain"));
    EXPECT_EQ(tree.nodeFor(root), tree.nodeFor(root));
    EXPECT_EQ(tree.nodeFor(nullptr), nullptr);
}

// What QML builds from the rows must be the subviews at any time, and nothing may pile up.
TEST_F(NodeTest, FollowTheSubviewsAndGoWithThem)
{
    auto* const list = tree.nodeFor(root)->childList();
    const QAbstractItemModelTester tester(list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::mt19937 random(7); // NOLINT(bugprone-random-generator-seed): the same storm each time
    for (int step = 0; step < 500; ++step) {
        const auto& subviews = root->subviews();
        if (subviews.size() < 3 || random() % 2 == 0)
            root->addSubview(random() % 4 == 0 && !subviews.empty() ? subviews[random() % subviews.size()]
                                                                    : std::make_shared<View>());
        else
            subviews[random() % subviews.size()]->removeFromSuperview();
        ASSERT_EQ(list->nodes().size(), root->subviews().size());
        for (std::size_t index = 0; index < list->nodes().size(); ++index)
            ASSERT_EQ(list->nodes()[index]->view(), root->subviews()[index]);
    }
    deleteWhatIsToBeDeletedLater();
    EXPECT_EQ(tree.nodeFor(root)->findChildren<Node*>().size(), list->count());
}

TEST_F(NodeTest, SurviveTheirViews)
{
    auto view = std::make_shared<View>(Rect{1, 2, 3, 4});
    const QPointer node = tree.nodeFor(view);
    view.reset();
    EXPECT_EQ(node->width(), 0);
    EXPECT_FALSE(node->isVisible());
    view = std::make_shared<View>(); // most likely where the other one was
    EXPECT_EQ(tree.nodeFor(view)->view(), view);
    deleteWhatIsToBeDeletedLater();
    EXPECT_FALSE(node);

    // A view on a page that leaves and on the one that comes: the first to go takes nothing from the other.
    auto leaving = std::make_unique<NodeTree>(false);
    EXPECT_TRUE(leaving->nodeFor(root)->isVisible());
    QSignalSpy told(tree.nodeFor(root), &Node::changed);
    leaving.reset();
    root->setHidden(true);
    EXPECT_EQ(told.count(), 1);
}

TEST_F(NodeTest, LetAButtonTakeItselfAway)
{
    auto button = std::make_shared<Button>("Remove");
    button->pressed = [self = button.get()] { self->removeFromSuperview(); };
    root->addSubview(button);
    auto* const node = qobject_cast<ButtonNode*>(tree.nodeFor(root)->childList()->nodes().front());
    button->setImage(Image::symbol("trash"));
    EXPECT_EQ(node->symbol(), "trash");
    button.reset();
    const QPointer pointer = node;
    node->press();
    ASSERT_TRUE(pointer) << "QML is still inside its handler";
    EXPECT_EQ(node->title(), "");
    node->press();
    EXPECT_EQ(tree.nodeFor(root)->childList()->count(), 0);
    deleteWhatIsToBeDeletedLater();
    EXPECT_FALSE(pointer);
}

TEST_F(NodeTest, CountSelectionsInTheUnitsOfTheirSide)
{
    const auto field = std::make_shared<TextField>();
    auto* const node = this->node<TextFieldNode>(field);
    node->edit("a😀é𝕏b");
    EXPECT_EQ(node->selectionStart(), 7);
    field->setSelection({1, 3});
    EXPECT_EQ(node->selectionStart(), 1);
    EXPECT_EQ(node->selectionEnd(), 6);
    node->select(6, 3);
    EXPECT_EQ(field->selection(), (TextRange{2, 2}));
    node->select(-1, 99);
    EXPECT_EQ(field->selection(), (TextRange{0, 5}));
}

TEST_F(NodeTest, TellQMLWhatBecameOfItsEditing)
{
    const auto field = std::make_shared<TextField>();
    const auto delegate = std::make_shared<Refusing>();
    field->delegate = delegate;
    auto* const node = this->node<TextFieldNode>(field);
    node->beginEditing();
    EXPECT_TRUE(node->isFocused());
    EXPECT_EQ(device().firstResponder(), field);
    node->edit("kept");

    delegate->refuses = true;
    QSignalSpy told(node, &Node::changed);
    node->edit("refused");
    EXPECT_EQ(told.count(), 1) << "QML shows what was typed, and must take it back";
    EXPECT_EQ(node->text(), "kept");
    node->endEditing();
    EXPECT_EQ(told.count(), 2);
    EXPECT_TRUE(node->isFocused());

    const auto other = std::make_shared<TextField>();
    QSignalSpy otherTold(tree.nodeFor(other), &Node::changed);
    this->node<TextFieldNode>(other)->beginEditing();
    EXPECT_EQ(otherTold.count(), 1) << "it has the focus in QML, and must give it back";
    delegate->refuses = false;
    this->node<TextFieldNode>(other)->beginEditing();
    EXPECT_EQ(device().firstResponder(), other);
    EXPECT_FALSE(node->isFocused());
    other->resignFirstResponder();
    EXPECT_FALSE(this->node<TextFieldNode>(other)->isFocused());
}

TEST_F(NodeTest, DisturbNoInputMethod)
{
    const auto field = std::make_shared<TextField>();
    const auto delegate = std::make_shared<Refusing>();
    field->delegate = delegate;
    auto* const node = this->node<TextFieldNode>(field);
    QSignalSpy told(node, &Node::changed);
    node->setComposing(true);
    field->setText("from elsewhere");
    node->pressReturn();
    node->select(0, 2);
    EXPECT_EQ(told.count(), 0);
    EXPECT_EQ(delegate->returns, 0);
    EXPECT_EQ(field->selection().length, 0U);
    node->setComposing(false);
    EXPECT_EQ(told.count(), 1);
    node->pressReturn();
    EXPECT_EQ(delegate->returns, 1);
}

TEST_F(NodeTest, MirrorOnlyWhatIsNatural)
{
    EXPECT_EQ(horizontalAlignment(TextAlignment::Left), Qt::AlignLeft);
    device().layoutDirection = LayoutDirection::RightToLeft; // the item exchanges left and right now
    EXPECT_EQ(horizontalAlignment(TextAlignment::Natural), Qt::AlignLeft);
    EXPECT_EQ(horizontalAlignment(TextAlignment::Left), Qt::AlignRight);
    EXPECT_EQ(horizontalAlignment(TextAlignment::Right), Qt::AlignLeft);
    EXPECT_EQ(horizontalAlignment(TextAlignment::Center), Qt::AlignHCenter);
}

TEST_F(NodeTest, ShowsImagesInTextAndNothingThatTheTextSaysItself)
{
    const auto label = std::make_shared<Label>("<b>plain</b>");
    EXPECT_EQ(node<LabelNode>(label)->richText(), "");
    const auto dot = std::make_shared<DisplayList>();
    AttributedText text;
    text.append(Image::drawn(dot, {9, 12}));
    text.append("<b>R&D</b>  x", {2.5});
    label->setAttributedText(text);
    const auto rich = node<LabelNode>(label)->richText();
    EXPECT_TRUE(rich.startsWith(R"(<div dir="ltr"><img src="image://drawn/)")) << rich.toStdString();
    EXPECT_TRUE(rich.endsWith(R"(/9/10/light" width="9" height="10">&lt;b&gt;R&amp;D&lt;/b&gt;&nbsp; x</div>)"))
        << rich.toStdString();
    EXPECT_EQ(node<LabelNode>(label)->text(), "<b>R&D</b>  x");
}

TEST_F(NodeTest, ShowShadesTheOtherWayRoundInDarkAppearance)
{
    const auto label = std::make_shared<Label>("text");
    root->addSubview(label);
    root->setBackgroundColor(Color::white());
    auto* const child = qobject_cast<LabelNode*>(tree.nodeFor(root)->childList()->nodes().front());
    EXPECT_EQ(child->textColor(), QColor(Qt::black));
    QSignalSpy told(child, &Node::changed);
    tree.setDark(true);
    EXPECT_EQ(told.count(), 1);
    EXPECT_GT(child->textColor().lightnessF(), 0.9);
    EXPECT_LT(tree.nodeFor(root)->color().lightnessF(), 0.1);
    label->setTextColor({0.9, 0.1, 0.1, 0.5});
    EXPECT_EQ(child->textColor(), QColor::fromRgbF(0.9F, 0.1F, 0.1F, 0.5F));
    EXPECT_EQ(child->color().alpha(), 0) << "what is clear stays clear";
}

} // namespace
} // namespace tessel::qt
