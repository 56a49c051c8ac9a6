#include "Scenes/SceneManager.h"

#include <cassert>

static const unsigned int GRID_POINTS = 100; // on each axis
static const float GRID_STEP = 1.5f;
static const unsigned int LINE_WIDTH = 4;

SceneManager::SceneManager() : grid(GRID_POINTS, GRID_POINTS, GRID_STEP) {}

SceneManager::~SceneManager() {
    for (const Scene* pScene : scenes) {
        delete pScene;
    }
}

void SceneManager::addScene(Scene* pScene) {
    assert(pScene);
    scenes.push_back(pScene);
}

void SceneManager::draw(Window* pWindow) {
    Scene* pScene = getCurrentScene();
    pScene->setSceneRender();
    lr.clear();
    lr.addLines(grid.getPoints(), grid.getIndices());
    lr.draw(LINE_WIDTH);
    pScene->draw(pWindow);
}

bool SceneManager::update(const Camera& camera, Music* pMusic, unsigned int time) {
    if (getCurrentScene()->update(camera, &grid, pMusic, time)) {
        return false;
    }
    ++currentScene;
    return currentScene >= scenes.size();
}

Scene* SceneManager::getCurrentScene() const { return scenes[currentScene]; }
