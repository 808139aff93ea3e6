#pragma once

#include "platform/qt/views/Node.h"
#include "platform/ui/TextField.h"

#include <QFont>

namespace tessel::qt {

/// A text field. QML's field is never bound to it: it sends what the user typed by `edit`, and on `changed` takes
/// `text` over if it is another one. Selections are counted in UTF-16 units, as QML does.
///
/// Focus: QML calls `beginEditing` when its field gets the active focus and `endEditing` when the field loses it while
/// its window is active; either may be refused, and `changed` is then told, on which the field's focus follows
/// `focused`.
class TextFieldNode final : public Node {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Nodes are made by the shell.")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY changed)
    Q_PROPERTY(QFont font READ font NOTIFY changed)
    Q_PROPERTY(int alignment READ alignment NOTIFY changed)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY changed)
    Q_PROPERTY(int selectionStart READ selectionStart NOTIFY changed)
    Q_PROPERTY(int selectionEnd READ selectionEnd NOTIFY changed)
    Q_PROPERTY(bool focused READ isFocused NOTIFY changed)
    Q_PROPERTY(bool clearButton READ hasClearButton NOTIFY changed)
    Q_PROPERTY(bool returnKeyEnabled READ isReturnKeyEnabled NOTIFY changed)
    Q_PROPERTY(bool returnKeyIsDone READ returnKeyIsDone NOTIFY changed)
    Q_PROPERTY(bool capitalizesWords READ capitalizesWords NOTIFY changed)
    Q_PROPERTY(bool corrects READ corrects NOTIFY changed)
    Q_PROPERTY(bool ground READ hasGround CONSTANT)
    Q_PROPERTY(bool composing READ isComposing WRITE setComposing NOTIFY composingChanged)

public:
    using Node::Node;

    [[nodiscard]] QString kind() const override { return QStringLiteral("textField"); }
    [[nodiscard]] QString text() const;
    [[nodiscard]] QString placeholder() const;
    [[nodiscard]] QFont font() const;
    /// See horizontalAlignment.
    [[nodiscard]] int alignment() const;
    [[nodiscard]] bool isEnabled() const;
    [[nodiscard]] int selectionStart() const;
    [[nodiscard]] int selectionEnd() const;
    [[nodiscard]] bool isFocused() const;
    /// Whether a button that clears the text is to be shown now.
    [[nodiscard]] bool hasClearButton() const;
    [[nodiscard]] bool isReturnKeyEnabled() const;
    [[nodiscard]] bool returnKeyIsDone() const;
    [[nodiscard]] bool capitalizesWords() const;
    [[nodiscard]] bool corrects() const;
    /// Else it looks like a label while nobody edits it.
    [[nodiscard]] bool hasGround() const;
    /// Whether an input method is composing: QML writes it. Until it has ended, nothing is told that would disturb it,
    /// and Return is the input method's.
    [[nodiscard]] bool isComposing() const { return composing_; }
    void setComposing(bool);

    /// The whole text as the user's editing left it. The program may refuse or change it: `changed` is then told.
    Q_INVOKABLE void edit(const QString& text);
    Q_INVOKABLE void clear();
    Q_INVOKABLE void beginEditing();
    Q_INVOKABLE void endEditing();
    Q_INVOKABLE void pressReturn();
    /// The user's selection, or the place of the caret when both are equal.
    Q_INVOKABLE void select(int start, int end);

signals:
    void composingChanged();

protected:
    void viewChanged(ViewChange) override;

private:
    [[nodiscard]] std::shared_ptr<TextField> field() const;

    bool composing_ = false;
    bool heldBack_ = false;  ///< of a change that was not told while composing
    bool selecting_ = false; ///< the selection comes from QML, which need not be told
};

} // namespace tessel::qt
