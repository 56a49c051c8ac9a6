#include "Scenes/WritingScene.h"

bool WritingScene::playMove(unsigned int time) {
    if (!camera().update(time)) {
        ++currentCam;
    }
    return hasMove();
}
