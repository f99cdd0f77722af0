// SPDX-License-Identifier: MIT

/** A new element with these properties. */
export const make = <K extends keyof HTMLElementTagNameMap>(tag: K, properties: Partial<HTMLElementTagNameMap[K]>): HTMLElementTagNameMap[K] =>
  Object.assign(document.createElement(tag), properties);

/** What a screen reader calls an element. */
export const label = (element: Element, text: string): void => element.setAttribute('aria-label', text);
