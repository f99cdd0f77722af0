// SPDX-License-Identifier: MIT
import type { TextKey } from './texts.ts';

/** Why a page shows no picture, as a sentence for the reader; `detail` fills its %1. */
export class Trouble extends Error {
  constructor(
    readonly key: TextKey,
    readonly detail = '',
  ) {
    super(`${key} ${detail}`);
  }
}

/** Ends the reading of a scene that is not as it must be; `what` says where. */
export function demand(condition: unknown, what: string): asserts condition {
  if (!condition) throw new Trouble('broken', what);
}
