#include "3D/Camera/TopDownCamera.h"

#include "Zentrik/Controllers/InputManager.h"

TopDownCamera::TopDownCamera(const Vector3f& position, float moveStep)
    : GLUCamera(position, Vector3f(0, -1, 0), Vector3f(1, 0, 0)), moveStep(moveStep) {}

void TopDownCamera::moveLeft() { position.z -= moveStep; }

void TopDownCamera::moveRight() { position.z += moveStep; }

void TopDownCamera::moveUp() { position.x += moveStep; }

void TopDownCamera::moveDown() { position.x -= moveStep; }

void TopDownCamera::update(int directions) {
    if ((directions & AD_UP) != 0) {
        moveUp();
    }
    if ((directions & AD_DOWN) != 0) {
        moveDown();
    }
    if ((directions & AD_LEFT) != 0) {
        moveLeft();
    }
    if ((directions & AD_RIGHT) != 0) {
        moveRight();
    }
}
