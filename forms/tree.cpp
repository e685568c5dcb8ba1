#include "forms/tree.h"

#include "common/error.h"

namespace vantrel::forms {

Tree::Tree(Form& owner, std::string name) : Control(owner, Kind::kTree, std::move(name)) {}

int Tree::Add(Node node) {
    if (node.parent < 0 || node.parent > Count()) RaiseError(error_number::kInvalidPropertyValue);
    nodes_.push_back(std::move(node));
    Notify(Aspect::kItems);
    return Count();
}

void Tree::SetImages(int index, int image, int selected_image) {
    if (index < 1 || index > Count()) RaiseError(error_number::kInvalidPropertyValue);
    Node& node = nodes_[static_cast<std::size_t>(index - 1)];
    node.image = image;
    node.selected_image = selected_image;
    Notify(Aspect::kValue);
}

void Tree::Clear() {
    nodes_.clear();
    selected_ = 0;
    Notify(Aspect::kItems);
}

void Tree::Select(int index) {
    UserSelect(index);
    Notify(Aspect::kSelection);
}

void Tree::UserSelect(int index) {
    if (index < 0 || index > Count()) RaiseError(error_number::kInvalidPropertyValue);
    selected_ = index;
}

}  // namespace vantrel::forms
