#include "forms/lists.h"

#include "common/error.h"
#include "forms/form.h"

namespace vantrel::forms {

std::string List::Item(int index) const {
    return index >= 0 && index < Count() ? items_[static_cast<std::size_t>(index)] : std::string();
}

void List::SetIndex(int index) {
    RestoreIndex(index);
    Raise(Click);
}

void List::RestoreIndex(int index) {
    if (index < -1 || index >= Count()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    index_ = index;
    Notify(Aspect::kSelection);
}

void List::Add(const std::string& text) {
    items_.push_back(text);
    Notify(Aspect::kItems);
}

void List::Remove(int index) {
    if (index < 0 || index >= Count()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    items_.erase(items_.begin() + index);
    ++removals_;
    if (index == index_) {
        index_ = -1;
    } else if (index < index_) {
        --index_;
    }
    Notify(Aspect::kItems);
}

void List::Replace(std::vector<std::string> items) {
    items_ = std::move(items);
    ++removals_;
    index_ = -1;
    Notify(Aspect::kItems);
}

int ComboBox::IndexOf(const std::string& text) const {
    platform::CodePage& code_page = owner().program().machine.code_page;
    const std::string wanted = code_page.Fold(text);
    for (int i = 0; i < Count(); ++i) {
        if (code_page.Fold(Item(i)) == wanted) {
            return i;
        }
    }
    return -1;
}

void ComboBox::SetText(const std::string& text) {
    const int index = text.empty() ? -1 : IndexOf(text);
    if (index < 0 && !text.empty()) {
        RaiseError(error_number::kTextReadOnly);
    }
    SetIndex(index);
}

int Tree::Add(Node node) {
    if (node.parent < 0 || node.parent > Count()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    nodes_.push_back(std::move(node));
    Notify(Aspect::kItems);
    return Count();
}

void Tree::SetImages(int index, int image, int selected_image) {
    if (index < 1 || index > Count()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    Node& node = nodes_[static_cast<std::size_t>(index - 1)];
    node.image = image;
    node.selected_image = selected_image;
    Notify(Aspect::kValue);
}

void Tree::Clear() {
    nodes_.clear();
    ++clears_;
    selected_ = 0;
    Notify(Aspect::kItems);
}

void Tree::Select(int index) {
    MarkSelected(index);
    Notify(Aspect::kSelection);
}

void Tree::UserSelect(int index) {
    MarkSelected(index);
    Raise(NodeClick);
}

void Tree::MarkSelected(int index) {
    if (index < 0 || index > Count()) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    selected_ = index;
}

}  // namespace vantrel::forms
