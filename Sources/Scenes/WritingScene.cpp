#include "Scenes/WritingScene.h"

void WritingScene::write(const Words& words) const {
    (f.*words.way)(words.position, words.text, words.scale);
}
